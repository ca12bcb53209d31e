# Writes the completions of sift for bash, zsh and fish, from the options in its manual page.
# Call: cmake -DMANUAL=sift.1 -DFOLDER=folder -P completions.cmake
cmake_minimum_required(VERSION 3.20)

file(READ ${MANUAL} page)
string(REPLACE "\\-" "-" page "${page}")
string(REPLACE "\\e" "/" page "${page}")
string(REPLACE ";" "." page "${page}")
string(REGEX REPLACE "[][]" "" page "${page}")
# An option is a line of names, perhaps with an argument, and a line that describes it.
string(REGEX MATCHALL "\\.TP\n\\\\fB[^\n]*\n[^\n]*" options "${page}")

set(words)
set(zsh "#compdef sift\n_arguments -s")
set(fish)
foreach(option IN LISTS options)
    string(REGEX REPLACE "^.TP\n.fB([^\\]*)\\\\fR[^\n]*\n([^.:(]*).*" "\\1;\\2" parts "${option}")
    list(GET parts 0 names)
    list(GET parts 1 text)
    string(STRIP "${text}" text)
    string(REPLACE "'" "'\\''" text "${text}")  # a quote inside quotes, for all shells
    string(REPLACE ", " ";" names "${names}")
    set(argument "")
    if(option MATCHES "\\\\fI([A-Z]+)\\\\fR")
        set(argument ${CMAKE_MATCH_1})
    endif()

    string(APPEND fish "complete -c sift")
    string(REPLACE ";" " " all "${names}")
    foreach(name IN LISTS names)
        string(APPEND words " ${name}")
        string(APPEND zsh " \\\n    '(${all})${name}[${text}]")
        if(argument STREQUAL "FILE")
            string(APPEND zsh ":file:_files'")
        elseif(NOT argument STREQUAL "")
            string(APPEND zsh ":${argument}:'")
        else()
            string(APPEND zsh "'")
        endif()
        if(name MATCHES "^--(.*)")
            string(APPEND fish " -l ${CMAKE_MATCH_1}")
        else()
            string(REPLACE "-" " -s " short "${name}")
            string(APPEND fish "${short}")
        endif()
    endforeach()
    if(argument STREQUAL "FILE")
        string(APPEND fish " -r")
    elseif(NOT argument STREQUAL "")
        string(APPEND fish " -x")
    endif()
    string(APPEND fish " -d '${text}'\n")
endforeach()

file(WRITE ${FOLDER}/_sift "${zsh} \\\n    '*:file:_files'\n")
file(WRITE ${FOLDER}/sift.fish "${fish}")
# The default of readline completes files, also as the arguments of options.
file(WRITE ${FOLDER}/sift "_sift() {
    COMPREPLY=()
    [[ $2 == -* ]] || return
    mapfile -t COMPREPLY < <(compgen -W '${words}' -- \"$2\")
}
complete -o default -F _sift sift
")
