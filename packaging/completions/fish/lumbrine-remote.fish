# fish completion for lumbrine-remote

complete -c lumbrine-remote -f
complete -c lumbrine-remote -s h -l help -d 'print a summary and end'
complete -c lumbrine-remote -l version -d 'print the version and end'
complete -c lumbrine-remote -l send -x -d 'send a command'
complete -c lumbrine-remote -l expect -x -d 'wait for such a line'
complete -c lumbrine-remote -l wait -x -d 'let time pass'
complete -c lumbrine-remote -l timeout -x -d 'how long an expectation, and the first answer, may take'
complete -c lumbrine-remote -l watch -d 'print a line for each message'
complete -c lumbrine-remote -l token -x -d 'name this device, as a number other than 0'
complete -c lumbrine-remote -l key -x -d 'seal messages with the key of the receiver'
complete -c lumbrine-remote -l take-over -d 'take control from another client'
