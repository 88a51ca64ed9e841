# fish completion for lumbrine-headless

complete -c lumbrine-headless -f
complete -c lumbrine-headless -l check -d 'print what works and what does not, and end'
complete -c lumbrine-headless -s h -l help -d 'print a summary and end'
complete -c lumbrine-headless -l version -d 'print the version and end'
