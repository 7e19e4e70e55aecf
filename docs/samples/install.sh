cmake --install "${BUILD:-build/linux-x64}" --prefix "${PREFIX:-$HOME/lumalane}"
