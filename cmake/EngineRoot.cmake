# The engine of Firebird 3 and the texts of the client library, which on Debian 13 is of Firebird 4.
set(installed_firebird /usr/lib/${CMAKE_LIBRARY_ARCHITECTURE}/firebird)
find_path(FIREBIRD_ROOT plugins/libEngine12.so PATHS ${installed_firebird}/3.0 REQUIRED)
find_file(FIREBIRD_MESSAGES firebird.msg PATHS ${installed_firebird}/3.0 ${installed_firebird}/4.0 NO_DEFAULT_PATH REQUIRED)

# make_engine_root(FOLDER MESSAGES): Firebird's root folder, with the configuration under which we run it. MESSAGES is how
# the link to the texts is written.
function(make_engine_root folder messages)
    # What earlier builds have linked, and what must be a copy: through a link Firebird loads its character sets but
    # then does not find them by the name that it knows.
    foreach(part plugins plugins.conf intl)
        if(IS_SYMLINK ${folder}/${part})
            file(REMOVE ${folder}/${part})
        endif()
    endforeach()
    file(MAKE_DIRECTORY ${folder}/plugins)
    file(CREATE_LINK ${messages} ${folder}/firebird.msg SYMBOLIC)
    configure_file(${FIREBIRD_ROOT}/intl/libfbintl.so ${folder}/intl/libfbintl.so COPYONLY)
    configure_file(${CMAKE_SOURCE_DIR}/cmake/firebird.conf ${folder}/firebird.conf COPYONLY)
    configure_file(${CMAKE_SOURCE_DIR}/cmake/plugins.conf ${folder}/plugins.conf @ONLY)
endfunction()
