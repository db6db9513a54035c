# fish completion of mspdi: subcommands, their options, and plans.

set -l subcommands
complete -c mspdi -f
complete -c mspdi -l help -s h -d 'Print what there is to type'
complete -c mspdi -l version -d 'Print the version'
complete -c mspdi -n "__fish_seen_subcommand_from $subcommands" -l json -d 'Tell it as one JSON document'
complete -c mspdi -n "__fish_seen_subcommand_from $subcommands" -l quiet -s q -d 'Tell nothing'
