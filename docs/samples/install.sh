PREFIX=${PREFIX:-$HOME/lumalane}
cmake --install "${BUILD:-build/linux-x64}" --prefix "$PREFIX"
