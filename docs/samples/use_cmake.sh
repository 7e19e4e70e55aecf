cmake -S project -B example-build -DCMAKE_PREFIX_PATH="$PREFIX"
cmake --build example-build
example-build/example
