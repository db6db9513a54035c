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

_mspdi_steps='embedded namespace missing-uid duplicate-root root-task outline calendar-order project-calendar'
_mspdi_steps+=' standard-calendar resource-type unreadable-value split-roll-up split-pieces resource-weeks'
_mspdi_steps+=' exceptions-2003 recurring-exceptions work-weeks deadline-to-field lag-to-field units-to-field'
_mspdi_steps+=' field-keys'

_mspdi() {
    local word=${COMP_WORDS[COMP_CWORD]} subcommands='losses mend check diff view' options='--help --json --quiet --version'
    COMPREPLY=()
    compopt -o filenames 2>/dev/null
    if ((COMP_CWORD == 1)); then
        mapfile -t COMPREPLY < <(compgen -W "$subcommands --help --version" -- "$word")
        return
    fi
    case ${COMP_WORDS[1]} in
        losses) options+=' --all' ;;
        mend) options+=' --all --dry-run --only --output' ;;
        diff) options+=' --scenario' ;;
        view) options+=' --output --open' ;;
        -*) return ;;
    esac
    if [[ ${COMP_WORDS[COMP_CWORD - 1]} == --scenario ]]; then
        mapfile -t COMPREPLY < <(compgen -W "Actual Baseline $(printf 'Baseline%d ' {1..10})" -- "$word")
    elif [[ ${COMP_WORDS[1]} == view && ${COMP_WORDS[COMP_CWORD - 1]} == @(-o|--output) ]]; then
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
    elif [[ ${COMP_WORDS[COMP_CWORD - 1]} == --only ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$_mspdi_steps" -- "$word")
    elif [[ $word == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
    elif [[ ${COMP_WORDS[1]} == check ]]; then
        _mspdi_documents "$word"
    else
        _mspdi_plans "$word"
    fi
}

complete -F _mspdi mspdi
