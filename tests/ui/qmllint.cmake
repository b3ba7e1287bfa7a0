# Lints every view with all warnings as errors, including the QML compiler's: a binding or function it cannot compile
# is interpreted instead, mostly because a type is unknown.
#
#     cmake -DLINTER=... -DVIEWS=... -DBUILT=... -DQML=... -DVERSION=... -P qmllint.cmake
#
# VIEWS are the files, in the module if the build copies them there; BUILT is where the modules "Ulvak" and
# "Ulvak.Style" were built; QML is the location of Qt's own modules.

set(checks --compiler warning --multiline-strings warning --unused-imports warning)
# Limitations of this Qt version, whatever the view says.
set(beyond)
if(VERSION VERSION_GREATER_EQUAL 6.5)
  list(APPEND checks --unqualified warning --max-warnings 0)
  # Return types of Qt's or a model's methods: the compiler treats none of these classes as final.
  list(APPEND beyond "Cannot use shadowable base type for further lookups: QPointF")
else()
  # Ids outside a component: it is not compiled with them unless it is declared bound.
  list(APPEND beyond "Cannot access value for name (root|bar|cards|detail|line|others|row)")
  # Named by the engine itself.
  list(APPEND beyond "Cannot access value for name StandardKey")
endif()
# Loops over lists and constants captured by functions; in the oldest version also "|", "?." and "this".
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
  # A call that is compiled nevertheless.
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
