# make_engine_root(FOLDER LINKED): Firebird's root folder, with the configuration under which we run it. LINKED is how
# Firebird's installed folder is written in links.
function(make_engine_root folder linked)
    # What earlier builds have linked, and what must be a copy: through a link Firebird loads its character sets but
    # then does not find them by the name that it knows.
    foreach(part plugins plugins.conf intl)
        if(IS_SYMLINK ${folder}/${part})
            file(REMOVE ${folder}/${part})
        endif()
    endforeach()
    file(MAKE_DIRECTORY ${folder}/plugins)
    # Of Firebird's own plug-ins the engine alone is used, which Firebird finds where it is installed.
    file(CREATE_LINK ${linked}/firebird.msg ${folder}/firebird.msg SYMBOLIC)
    configure_file(${FIREBIRD_ROOT}/intl/libfbintl.so ${folder}/intl/libfbintl.so COPYONLY)
    configure_file(${CMAKE_SOURCE_DIR}/cmake/firebird.conf ${folder}/firebird.conf COPYONLY)
    configure_file(${CMAKE_SOURCE_DIR}/cmake/plugins.conf ${folder}/plugins.conf COPYONLY)
endfunction()
