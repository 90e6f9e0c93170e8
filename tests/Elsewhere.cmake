# The tests as they run in another host: with a decimal comma and the case rules of Turkish, in
# another folder and time zone, and where folders list their files in another order. The sanitizers
# would have to be loaded before what is preloaded here, and find nothing new.
#
# Of the tool the tests are another process. It takes on no locale, whatever the environment names:
# it meets the folder, the time zone and the order of folders, while the locale shows that the tests
# themselves read its output alike.
if(NOT HOL_SANITIZERS)
  set(locale tr_TR.UTF-8)
  set(locales ${PROJECT_BINARY_DIR}/locales)
  add_custom_command(OUTPUT ${locales}/${locale}/LC_CTYPE
    COMMAND ${CMAKE_COMMAND} -E make_directory ${locales}
    COMMAND localedef -i tr_TR -f UTF-8 ${locales}/${locale}
    VERBATIM)
  add_custom_target(hol_locale ALL DEPENDS ${locales}/${locale}/LC_CTYPE)
  add_library(hol_reversed_folders SHARED support/ReversedFolders.cpp)
  target_link_libraries(hol_reversed_folders PRIVATE hol_options ${CMAKE_DL_LIBS})
  set_target_properties(hol_reversed_folders PROPERTIES CXX_VISIBILITY_PRESET default)
  file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/elsewhere)
endif()

function(hol_test_elsewhere floor)
  if(HOL_SANITIZERS)
    return()
  endif()
  add_dependencies(hol_${floor}_tests hol_locale hol_reversed_folders)
  add_test(NAME ${floor}-elsewhere
    COMMAND hol_${floor}_tests
    WORKING_DIRECTORY ${PROJECT_BINARY_DIR}/elsewhere)
  set(environment
    HOL_TEST_LOCALE=${locale} LC_ALL=${locale} LOCPATH=${locales} TZ=Pacific/Kiritimati
    LD_PRELOAD=$<TARGET_FILE:hol_reversed_folders>)
  set_tests_properties(${floor}-elsewhere PROPERTIES ENVIRONMENT "${environment}")
endfunction()
