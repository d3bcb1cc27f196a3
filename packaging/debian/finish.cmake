# Adds to the files of the Debian package what only Debian asks for, before they are packed.
set(root ${CPACK_TEMPORARY_DIRECTORY}/usr/share)
set(here ${CMAKE_CURRENT_LIST_DIR})

configure_file(${here}/copyright ${root}/doc/halmek/copyright COPYONLY)
configure_file(${here}/changelog ${root}/doc/halmek/changelog COPYONLY)
if(EXISTS ${root}/doc/halmek/index.html)
  configure_file(${here}/doc-base ${root}/doc-base/halmek-manual COPYONLY)
endif()
file(GLOB compressed ${root}/man/man1/*.1 ${root}/doc/halmek/changelog)
execute_process(COMMAND gzip -9nf ${compressed} COMMAND_ERROR_IS_FATAL ANY)

# What the compiler says of itself goes, as in every package of Debian.
file(GLOB programs ${CPACK_TEMPORARY_DIRECTORY}/usr/bin/*)
execute_process(COMMAND strip --remove-section=.comment --remove-section=.note ${programs} COMMAND_ERROR_IS_FATAL ANY)

# The same permissions whatever the checkout had, and the same times: those of the last commit, or of the changelog.
execute_process(COMMAND chmod -R u=rwX,go=rX ${CPACK_TEMPORARY_DIRECTORY} COMMAND_ERROR_IS_FATAL ANY)
if(DEFINED ENV{SOURCE_DATE_EPOCH})
  execute_process(COMMAND find ${CPACK_TEMPORARY_DIRECTORY} -exec touch -h -d @$ENV{SOURCE_DATE_EPOCH} {} +
                  COMMAND_ERROR_IS_FATAL ANY)
endif()
