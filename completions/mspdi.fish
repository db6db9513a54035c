# fish completion of mspdi: subcommands, their options, plans and documents.

set -l subcommands losses mend check diff view
set -l steps embedded namespace missing-uid duplicate-root root-task outline calendar-order project-calendar \
    standard-calendar resource-type unreadable-value split-roll-up split-pieces resource-weeks \
    exceptions-2003 recurring-exceptions work-weeks deadline-to-field lag-to-field units-to-field \
    field-keys
complete -c mspdi -f
complete -c mspdi -n "not __fish_seen_subcommand_from $subcommands" -a losses -d 'Tell what of a plan is lost'
complete -c mspdi -n "not __fish_seen_subcommand_from $subcommands" -a mend -d 'Mend a copy of a refused plan'
complete -c mspdi -n "not __fish_seen_subcommand_from $subcommands" -a check -d 'Tell whether documents are sound'
complete -c mspdi -n "not __fish_seen_subcommand_from $subcommands" -a diff -d 'Tell what differs'
complete -c mspdi -n "not __fish_seen_subcommand_from $subcommands" -a view -d 'Make a page that shows a document'
complete -c mspdi -n "__fish_seen_subcommand_from losses mend diff view" -a "(__fish_complete_suffix .xml)"
complete -c mspdi -n "__fish_seen_subcommand_from check diff view" -a "(__fish_complete_directories)"
complete -c mspdi -n "__fish_seen_subcommand_from losses" -l all -d 'Tell every place'
complete -c mspdi -n "__fish_seen_subcommand_from mend" -l all -d 'Do all steps'
complete -c mspdi -n "__fish_seen_subcommand_from mend" -l dry-run -d 'Write nothing'
complete -c mspdi -n "__fish_seen_subcommand_from mend" -l only -x -a "$steps" -d 'Do this step only'
complete -c mspdi -n "__fish_seen_subcommand_from mend" -l output -s o -r -F -d 'The mended copy'
complete -c mspdi -n "__fish_seen_subcommand_from diff" -l scenario -x -a "Actual Baseline Baseline(seq 10)" -d 'Compare this scenario'
complete -c mspdi -n "__fish_seen_subcommand_from view" -l output -s o -r -F -d 'The page to write'
complete -c mspdi -n "__fish_seen_subcommand_from view" -l open -d 'Open the page in the browser'
complete -c mspdi -l help -s h -d 'Print what there is to type'
complete -c mspdi -l version -d 'Print the version'
complete -c mspdi -n "__fish_seen_subcommand_from $subcommands" -l json -d 'Tell it as one JSON document'
complete -c mspdi -n "__fish_seen_subcommand_from $subcommands" -l quiet -s q -d 'Tell nothing'
