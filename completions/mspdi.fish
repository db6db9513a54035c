# fish completion of mspdi: subcommands, their options, plans and documents.

# The empty document that is installed with the program.
function __mspdi_installed_template
    set -l program (command -s mspdi)
    and set -l installed (string replace -r '/bin/mspdi$' '' -- $program)/share/kadenza2/Empty.kdzx
    and test -d $installed
    and echo $installed
end

set -l subcommands import migrate losses mend check diff view
set -l steps embedded namespace missing-uid duplicate-root root-task outline calendar-order project-calendar \
    standard-calendar resource-type unreadable-value split-roll-up split-pieces resource-weeks \
    exceptions-2003 recurring-exceptions work-weeks deadline-to-field lag-to-field units-to-field \
    hyperlink-to-field wbs-to-field contact-to-field manual-to-field active-to-field \
    calendar-to-field actual-to-field physical-to-field estimated-to-field recurring-to-field \
    subproject-to-field commitment-to-field entered-to-field leveling-to-field \
    overtime-to-field accrual-to-field leveling-settings-to-field details-to-field \
    assignment-notes-to-field contour-to-field assignment-delay-to-field field-keys
complete -c mspdi -f
complete -c mspdi -n "not __fish_seen_subcommand_from $subcommands" -a losses -d 'Tell what of a plan is lost'
complete -c mspdi -n "not __fish_seen_subcommand_from $subcommands" -a import -d 'Make documents of plans'
complete -c mspdi -n "not __fish_seen_subcommand_from $subcommands" -a migrate -d 'Make documents of many plans'
complete -c mspdi -n "not __fish_seen_subcommand_from $subcommands" -a mend -d 'Mend a copy of a refused plan'
complete -c mspdi -n "not __fish_seen_subcommand_from $subcommands" -a check -d 'Tell whether documents are sound'
complete -c mspdi -n "not __fish_seen_subcommand_from $subcommands" -a diff -d 'Tell what differs'
complete -c mspdi -n "not __fish_seen_subcommand_from $subcommands" -a view -d 'Make a page that shows a document'
complete -c mspdi -n "__fish_seen_subcommand_from import losses mend diff view" -a "(__fish_complete_suffix .xml)"
complete -c mspdi -n "__fish_seen_subcommand_from check diff view" -a "(__fish_complete_directories)"
complete -c mspdi -n "__fish_seen_subcommand_from import" -l as-in-winter -d 'Give dates the offset of winter'
complete -c mspdi -n "__fish_seen_subcommand_from import" -l log -r -F -d 'Add the importer\'s log to this file'
complete -c mspdi -n "__fish_seen_subcommand_from import" -l mend -d 'Mend plans that are refused'
complete -c mspdi -n "__fish_seen_subcommand_from import" -l mend=all -d 'Improve all plans'
complete -c mspdi -n "__fish_seen_subcommand_from import" -l name -x -d 'The name of the document'
complete -c mspdi -n "__fish_seen_subcommand_from import" -l output -s o -x -a "(__fish_complete_directories)" -d 'The folder for the documents'
complete -c mspdi -n "__fish_seen_subcommand_from import" -l overwrite -d 'Replace a document of that name'
complete -c mspdi -n "__fish_seen_subcommand_from import" -l template -x -a "(__mspdi_installed_template; __fish_complete_directories)" -d 'The document to begin with'
complete -c mspdi -n "__fish_seen_subcommand_from migrate" -F
complete -c mspdi -n "__fish_seen_subcommand_from migrate" -l as-in-winter -d 'Give dates the offset of winter'
complete -c mspdi -n "__fish_seen_subcommand_from migrate" -l dry-run -d 'Write nothing'
complete -c mspdi -n "__fish_seen_subcommand_from migrate" -l jobs -x -d 'So many processes'
complete -c mspdi -n "__fish_seen_subcommand_from migrate" -l keep-tree -d 'Keep the sub-folders'
complete -c mspdi -n "__fish_seen_subcommand_from migrate" -l logs -x -a "(__fish_complete_directories)" -d 'A log of each plan, in this folder'
complete -c mspdi -n "__fish_seen_subcommand_from migrate" -l machines -x -d 'Import on these machines: a,b,:'
complete -c mspdi -n "__fish_seen_subcommand_from migrate" -l mend -d 'Mend plans that are refused'
complete -c mspdi -n "__fish_seen_subcommand_from migrate" -l mend=all -d 'Improve all plans'
complete -c mspdi -n "__fish_seen_subcommand_from migrate" -l no-losses -d 'Do not look for losses'
complete -c mspdi -n "__fish_seen_subcommand_from migrate" -l only-failed -d 'Only plans that failed before'
complete -c mspdi -n "__fish_seen_subcommand_from migrate" -l output -s o -x -a "(__fish_complete_directories)" -d 'The folder for the documents'
complete -c mspdi -n "__fish_seen_subcommand_from migrate" -l plan-megabytes -x -d 'End a plan that takes more'
complete -c mspdi -n "__fish_seen_subcommand_from migrate" -l plan-seconds -x -d 'End a plan that takes longer'
complete -c mspdi -n "__fish_seen_subcommand_from migrate" -l template -x -a "(__mspdi_installed_template; __fish_complete_directories)" -d 'The document to begin with'
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
