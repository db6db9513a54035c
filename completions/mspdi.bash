# bash completion of mspdi: subcommands, their options, plans and documents.

_mspdi_plans() {
    local path
    while IFS= read -r path; do
        [[ -d $path || ${path,,} == *.xml || ${path,,} == *.mspxml ]] && COMPREPLY+=("$path")
    done < <(compgen -f -- "$1")
}

_mspdi_documents() {
    local path
    while IFS= read -r path; do
        COMPREPLY+=("$path")
    done < <(compgen -d -- "$1")
}

_mspdi() {
    local word=${COMP_WORDS[COMP_CWORD]} subcommands='losses check diff view' options='--help --json --quiet --version'
    COMPREPLY=()
    compopt -o filenames 2>/dev/null
    if ((COMP_CWORD == 1)); then
        mapfile -t COMPREPLY < <(compgen -W "$subcommands --help --version" -- "$word")
        return
    fi
    case ${COMP_WORDS[1]} in
        losses) options+=' --all' ;;
        diff) options+=' --scenario' ;;
        view) options+=' --output --open' ;;
        -*) return ;;
    esac
    if [[ ${COMP_WORDS[COMP_CWORD - 1]} == --scenario ]]; then
        mapfile -t COMPREPLY < <(compgen -W "Actual Baseline $(printf 'Baseline%d ' {1..10})" -- "$word")
    elif [[ ${COMP_WORDS[COMP_CWORD - 1]} == @(-o|--output) ]]; then
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
    elif [[ $word == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
    elif [[ ${COMP_WORDS[1]} == check ]]; then
        _mspdi_documents "$word"
    else
        _mspdi_plans "$word"
    fi
}

complete -F _mspdi mspdi
