# Completion of kippo for fish. kippo itself says what may come next: a line each, with a tab before what it means.

function __kippo_complete
    set -l typed (commandline -opc) (commandline -ct)
    for line in (kippo --complete $typed[2..-1] 2>/dev/null)
        if test "$line" = :folder
            __fish_complete_directories (commandline -ct)
        else
            echo $line
        end
    end
end

complete -c kippo -f -a '(__kippo_complete)'
