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

# The empty document that is installed with the program, then folders.
_mspdi_templates() {
    local program installed
    program=$(type -P mspdi)
    installed=${program%/bin/mspdi}/share/kadenza2/Empty.kdzx
    [[ -n $program && -d $installed && $installed == "$1"* ]] && COMPREPLY+=("$installed")
    _mspdi_documents "$1"
}

_mspdi_steps='embedded namespace missing-uid duplicate-root root-task outline calendar-order project-calendar'
_mspdi_steps+=' standard-calendar resource-type unreadable-value split-roll-up split-pieces resource-weeks'
_mspdi_steps+=' exceptions-2003 recurring-exceptions work-weeks deadline-to-field lag-to-field units-to-field'
_mspdi_steps+=' hyperlink-to-field wbs-to-field contact-to-field manual-to-field active-to-field'
_mspdi_steps+=' calendar-to-field actual-to-field physical-to-field estimated-to-field recurring-to-field'
_mspdi_steps+=' subproject-to-field commitment-to-field entered-to-field leveling-to-field'
_mspdi_steps+=' overtime-to-field accrual-to-field leveling-settings-to-field details-to-field'
_mspdi_steps+=' assignment-notes-to-field contour-to-field assignment-delay-to-field field-keys'

_mspdi() {
    local word=${COMP_WORDS[COMP_CWORD]} subcommands='import migrate losses mend check diff view' options='--help --json --quiet --version'
    COMPREPLY=()
    compopt -o filenames 2>/dev/null
    if ((COMP_CWORD == 1)); then
        mapfile -t COMPREPLY < <(compgen -W "$subcommands --help --version" -- "$word")
        return
    fi
    case ${COMP_WORDS[1]} in
        import) options+=' --as-in-winter --log --mend --mend=all --name --output --overwrite --template' ;;
        migrate) options+=' --as-in-winter --dry-run --jobs --keep-tree --logs --machines --mend --mend=all --no-losses --only-failed --output --plan-megabytes --plan-seconds --template' ;;
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
    elif [[ ${COMP_WORDS[1]}/${COMP_WORDS[COMP_CWORD - 1]} =~ ^(import/--name|migrate/(--jobs|--machines|--plan-megabytes|--plan-seconds))$ ]]; then
        return
    elif [[ ${COMP_WORDS[1]} == import && ${COMP_WORDS[COMP_CWORD - 1]} == --log ]]; then
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
    elif [[ ${COMP_WORDS[1]} == @(import|migrate) && ${COMP_WORDS[COMP_CWORD - 1]} == --template ]]; then
        _mspdi_templates "$word"
    elif [[ ${COMP_WORDS[1]} == check || ${COMP_WORDS[1]}/${COMP_WORDS[COMP_CWORD - 1]} =~ ^((import|migrate)/(-o|--output)|migrate/--logs)$ ]]; then
        _mspdi_documents "$word"
    elif [[ ${COMP_WORDS[1]} == migrate ]]; then
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
    else
        _mspdi_plans "$word"
    fi
}

complete -F _mspdi mspdi
