# fish completion for lumbrine-web

complete -c lumbrine-web -f
complete -c lumbrine-web -l version -d 'print the version and end'
complete -c lumbrine-web -s h -l help -d 'print a summary and end'
complete -c lumbrine-web -l port -x -d 'TCP port that browsers connect to'
complete -c lumbrine-web -l receiver -x -a '(__fish_print_hostnames)' -d 'the receiver, if not on this computer'
complete -c lumbrine-web -l seal-key -x -d 'key of a receiver elsewhere, or @FILE'
complete -c lumbrine-web -l certificate -r -F -d 'serve HTTPS with this certificate chain'
complete -c lumbrine-web -l key -r -F -d 'private key of the certificate'
complete -c lumbrine-web -l new-key -d 'make a new key, print the new address and end'
