# fish completion for lumbrine-headless

complete -c lumbrine-headless -f
complete -c lumbrine-headless -l check -d 'print what works and what does not, and end'
complete -c lumbrine-headless -l save -r -F -d 'behind --check: also write a file for those who help'
complete -c lumbrine-headless -l pair -d 'print a key for clients, and end'
complete -c lumbrine-headless -l forget -x -d 'forget the key of this name, and end'
complete -c lumbrine-headless -l forget-all -d 'forget all keys, and end'
complete -c lumbrine-headless -s h -l help -d 'print a summary and end'
complete -c lumbrine-headless -l version -d 'print the version and end'
