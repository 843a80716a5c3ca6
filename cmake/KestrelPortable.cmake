# Programs that find the component in their own folder, with nothing registered.

# kestrel_portable_manifest(PROGRAM FOLDER): writes FOLDER/PROGRAM.exe.manifest, which lies beside such a program
function(kestrel_portable_manifest program folder)
    set(KESTREL_PROGRAM ${program})
    configure_file(${CMAKE_SOURCE_DIR}/hosts/samples/portable/portable.exe.manifest.in ${folder}/${program}.exe.manifest @ONLY)
endfunction()
