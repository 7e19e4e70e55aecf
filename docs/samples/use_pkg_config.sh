export PKG_CONFIG_PATH=$PREFIX/lib/pkgconfig LD_LIBRARY_PATH=$PREFIX/lib
g++ -std=c++17 convert.cpp $(pkg-config --cflags --libs lumalane) -o convert
./convert
