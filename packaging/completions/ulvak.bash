# shellcheck shell=bash
# bash completion for ulvak

_ulvak() {
    local word=${COMP_WORDS[COMP_CWORD]}
    if [[ $word == = || ${COMP_WORDS[COMP_CWORD - 1]} == = ]]; then
        mapfile -t COMPREPLY < <(compgen -W "safe regenerable caution unknown keep" -- "${word#=}")
        return
    fi
    mapfile -t COMPREPLY < <(compgen -W "--dump --ai --autoscan --level= --select-first --reduced-motion --help --version" -- "$word")
    if [[ ${#COMPREPLY[@]} == 1 && ${COMPREPLY[0]} == *= ]]; then
        compopt -o nospace
    fi
}

complete -F _ulvak ulvak
