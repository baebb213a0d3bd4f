# Completion of kippo for bash. kippo itself says what may come next: a line each, with a tab before what it means.

_kippo() {
    local line
    COMPREPLY=()
    while IFS= read -r line; do
        if [[ $line == :folder ]]; then
            compopt -o filenames 2>/dev/null
            mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -d -- "${COMP_WORDS[COMP_CWORD]}")
        else
            COMPREPLY+=("${line%%$'\t'*}")
        fi
    done < <(kippo --complete "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null)
}

complete -F _kippo kippo
