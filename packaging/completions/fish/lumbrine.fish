# fish completion for lumbrine

complete -c lumbrine -f
complete -c lumbrine -l hidden -d 'show no window at first'
complete -c lumbrine -s h -l help -d 'print a summary and end'
complete -c lumbrine -l version -d 'print the version and end'
