# Installs tavcc with its manual pages, English and Chinese, and completions, which it makes itself
# of its option table.
set(pages ${PROJECT_BINARY_DIR}/packaging/pages)
file(MAKE_DIRECTORY ${pages}/zh_CN)
find_program(GZIP gzip REQUIRED)
add_custom_command(
  OUTPUT ${pages}/tavcc.1.gz ${pages}/zh_CN/tavcc.1.gz ${pages}/tavcc.bash ${pages}/_tavcc
         ${pages}/tavcc.fish
  COMMAND tavcc man --lang en > ${pages}/tavcc.1
  COMMAND tavcc man --lang zh > ${pages}/zh_CN/tavcc.1
  COMMAND ${GZIP} -9nf ${pages}/tavcc.1 ${pages}/zh_CN/tavcc.1
  COMMAND tavcc completion bash --lang en > ${pages}/tavcc.bash
  COMMAND tavcc completion zsh --lang en > ${pages}/_tavcc
  COMMAND tavcc completion fish --lang en > ${pages}/tavcc.fish
  DEPENDS tavcc
  VERBATIM)
add_custom_target(tavcc_pages ALL DEPENDS ${pages}/tavcc.1.gz)

install(TARGETS tavcc RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tool)
install(FILES ${pages}/tavcc.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tool)
install(FILES ${pages}/zh_CN/tavcc.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/zh_CN/man1
        COMPONENT tool)
install(
  FILES ${pages}/tavcc.bash
  DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
  RENAME tavcc
  COMPONENT tool)
install(FILES ${pages}/tavcc.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d
        COMPONENT tool)
# zsh looks into another folder for what a package brings than for what a machine's owner installs.
install(FILES ${pages}/_tavcc DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions
        COMPONENT tool EXCLUDE_FROM_ALL)
install(FILES ${pages}/_tavcc DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions
        COMPONENT own_machine)
