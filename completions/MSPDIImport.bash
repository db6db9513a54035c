# bash completion of MSPDIImport: each position of its two forms.

# Folders, and files with one of the given extensions.
_MSPDIImport_paths() {
    local word=$1 path extension
    while IFS= read -r path; do
        if [[ -d $path ]]; then
            COMPREPLY+=("$path")
            continue
        fi
        for extension in "${@:2}"; do
            [[ ${path,,} == *."$extension" ]] && COMPREPLY+=("$path")
        done
    done < <(compgen -f -- "$word")
}

_MSPDIImport() {
    local word=${COMP_WORDS[COMP_CWORD]}
    COMPREPLY=()
    compopt -o filenames 2>/dev/null
    case $COMP_CWORD in
        1) COMPREPLY=(--template-path) ;;
        2) _MSPDIImport_paths "$word" ;; # a template is a folder
        3)
            _MSPDIImport_paths "$word" xml mspxml
            [[ -z $word || --input-list == "$word"* ]] && COMPREPLY+=(--input-list)
            ;;
        4)
            if [[ ${COMP_WORDS[3]} == --input-list ]]; then
                mapfile -t COMPREPLY < <(compgen -f -- "$word")
            else
                _MSPDIImport_paths "$word"
            fi
            ;;
        5) [[ ${COMP_WORDS[3]} == --input-list ]] && _MSPDIImport_paths "$word" ;;
    esac
}

complete -F _MSPDIImport MSPDIImport
