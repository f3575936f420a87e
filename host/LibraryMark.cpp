// libkivo.so is put together from the static libraries of its parts; a library needs one source of
// its own.
