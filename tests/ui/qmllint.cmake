# Lints every view, with each warning an error, those of the compiler among them: a binding or a function that it cannot
# translate is left to the interpreter, mostly because a type is not known.
#
#     cmake -DLINTER=... -DVIEWS=... -DBUILT=... -DQML=... -DVERSION=... -P qmllint.cmake
#
# VIEWS are the files, in the module where the toolkit has copied them to it, BUILT is where the modules "Ulvak" and "Ulvak.Style"
# were made, QML where the toolkit's own are.

set(checks --compiler warning --multiline-strings warning --unused-imports warning)
# What this version of the toolkit cannot do, whatever the view says.
set(beyond)
if(VERSION VERSION_GREATER_EQUAL 6.5)
  list(APPEND checks --unqualified warning --max-warnings 0)
  # What a method of the toolkit or of a model returns: no class of these is final for it.
  list(APPEND beyond "Cannot use shadowable base type for further lookups: QPointF")
else()
  # Ids that are around a component: it is not compiled with them before it can say that it stays where it was made.
  list(APPEND beyond "Cannot access value for name (root|bar|cards|detail|line|others|row)")
  # Named by the engine itself.
  list(APPEND beyond "Cannot access value for name StandardKey")
endif()
# A loop over what is listed, a constant that a function of its own sees; in the oldest also "|", "?." and "this".
list(APPEND beyond "Instruction \"generate_[A-Za-z]+\" not implemented")

file(GLOB resources "${BUILT}/.rcc/*.qrc" "${BUILT}/style/.rcc/*.qrc")
list(TRANSFORM resources PREPEND "--resource=")
set(found "")
foreach(view IN LISTS VIEWS)
  execute_process(COMMAND "${LINTER}" ${checks} --bare -I "${BUILT}" -I "${QML}" ${resources} "${view}"
    OUTPUT_VARIABLE said ERROR_VARIABLE saidToo RESULT_VARIABLE status)
  string(REGEX MATCHALL "(Warning|Error): [^\n]*" warnings "${said}${saidToo}")
  foreach(reason IN LISTS beyond)
    list(FILTER warnings EXCLUDE REGEX ": (Could not compile .*: )?${reason}( \\[compiler\\])?$")
  endforeach()
  # A call that is compiled all the same.
  list(FILTER warnings EXCLUDE REGEX ": Member [^:]* of .* can be shadowed \\[compiler\\]$")
  if(NOT "${said}${saidToo}" MATCHES "(Warning|Error): " AND NOT status EQUAL 0)
    list(APPEND warnings "${view}: the linter failed: ${status}")
  endif()
  list(APPEND found ${warnings})
endforeach()
if(found)
  list(JOIN found "\n" found)
  message(FATAL_ERROR "${found}")
endif()
