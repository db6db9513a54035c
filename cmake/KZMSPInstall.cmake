# What `make install` and the Debian package hold, and the package itself. Paths are relative to the prefix.
include(GNUInstallDirs)
set(KZMSP_PACKAGE mspdiimport)
set(KZMSP_DOC_DIR ${CMAKE_INSTALL_DATADIR}/doc/${KZMSP_PACKAGE})
set(documents ${CMAKE_BINARY_DIR}/documents)

# kzmsp_compressed(<file> <result>) writes the file with the project's values filled in, compressed the same every time.
find_program(GZIP gzip REQUIRED)
function(kzmsp_compressed file result)
    string(REGEX REPLACE "\\.gz$" "" plain ${result})
    configure_file(${file} ${documents}/${plain} @ONLY)
    add_custom_command(OUTPUT ${documents}/${result} DEPENDS ${documents}/${plain} VERBATIM
                       COMMAND ${GZIP} -9n -c ${documents}/${plain} > ${documents}/${result})
    set_property(GLOBAL APPEND PROPERTY kzmsp_compressed_files ${documents}/${result})
endfunction()

# The day that the man page and the package's change log name; SOURCE_DATE_EPOCH sets it for a build that repeats.
string(TIMESTAMP KZMSP_DATE "%Y-%m-%d" UTC)
string(TIMESTAMP KZMSP_CHANGELOG_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
set(CPACK_PACKAGE_CONTACT "The MSPDIImport maintainers <maintainers@kadenza.invalid>")
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
kzmsp_compressed(docs/MSPDIImport.1 MSPDIImport.1.gz)
kzmsp_compressed(docs/mspdi.1 mspdi.1.gz)
kzmsp_compressed(docs/mspdi-check.1 mspdi-check.1.gz)
kzmsp_compressed(docs/mspdi-diff.1 mspdi-diff.1.gz)
kzmsp_compressed(docs/mspdi-import.1 mspdi-import.1.gz)
kzmsp_compressed(docs/mspdi-losses.1 mspdi-losses.1.gz)
kzmsp_compressed(docs/mspdi-mend.1 mspdi-mend.1.gz)
kzmsp_compressed(docs/mspdi-migrate.1 mspdi-migrate.1.gz)
kzmsp_compressed(docs/mspdi-view.1 mspdi-view.1.gz)
kzmsp_compressed(CHANGELOG.md changelog.gz)
kzmsp_compressed(packaging/changelog.Debian changelog.Debian.gz)
get_property(compressed GLOBAL PROPERTY kzmsp_compressed_files)
add_custom_target(documents ALL DEPENDS ${compressed})

install(TARGETS MSPDIImport mspdi RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(DIRECTORY share/kadenza2 share/mspdi DESTINATION ${CMAKE_INSTALL_DATADIR})
install(FILES ${documents}/MSPDIImport.1.gz ${documents}/mspdi.1.gz
              ${documents}/mspdi-check.1.gz ${documents}/mspdi-diff.1.gz
              ${documents}/mspdi-import.1.gz ${documents}/mspdi-losses.1.gz ${documents}/mspdi-mend.1.gz
              ${documents}/mspdi-migrate.1.gz ${documents}/mspdi-view.1.gz
        DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES completions/MSPDIImport.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
        RENAME MSPDIImport)
install(FILES completions/mspdi.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME mspdi)
install(FILES completions/mspdi.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
# Debian's zsh looks for its packages' completions in a folder of their own.
install(CODE "set(zsh_folder site-functions)
if(CMAKE_INSTALL_PREFIX STREQUAL \"/usr\")
    set(zsh_folder vendor-completions)
endif()
file(INSTALL \"${CMAKE_SOURCE_DIR}/completions/_MSPDIImport\" \"${CMAKE_SOURCE_DIR}/completions/_mspdi\"
     DESTINATION \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_DATADIR}/zsh/\${zsh_folder}\")")
# The documents lie side by side where they are installed, and the links of the README lead there too.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS README.md)
file(READ README.md readme)
string(REPLACE "](docs/" "](" readme "${readme}")
string(REPLACE "](CHANGELOG.md)" "](changelog.gz)" readme "${readme}")
file(CONFIGURE OUTPUT ${documents}/README.md CONTENT "${readme}" @ONLY)
install(FILES ${documents}/README.md CONTRIBUTING.md docs/Oddities.md docs/mapping.md docs/reliability.md packaging/copyright
              ${documents}/changelog.gz ${documents}/changelog.Debian.gz
        DESTINATION ${KZMSP_DOC_DIR})
install(DIRECTORY docs/pictures DESTINATION ${KZMSP_DOC_DIR})
install(DIRECTORY examples DESTINATION ${KZMSP_DOC_DIR})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ${KZMSP_PACKAGE})
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/package)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
                                                WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Zones by name are read from its files.
set(CPACK_DEBIAN_PACKAGE_DEPENDS tzdata)
# Only mspdi migrate --machines runs it.
set(CPACK_DEBIAN_PACKAGE_SUGGESTS parallel)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "import Microsoft Project XML plans into Kadenza 2 documents")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"MSPDIImport turns project plans that were saved as XML (MSPDI) into documents
of the Kadenza 2 planning application: tasks with their outline, dates, effort
and links, resources, assignments, calendars, notes, custom fields, split tasks
and every saved baseline.
.
mspdi is the program for people: it imports with one word and tells what of a
plan is lost, mends plans that the importer refuses, shows a document in a
page for any browser, checks and compares documents, and migrates thousands of
plans with a report.
.
The package holds an empty document to import into, and example plans.")
include(CPack)
