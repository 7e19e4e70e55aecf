#!/bin/bash -eu
# Builds the fuzz targets as continuous fuzzing services call it: with the compiler and flags of $CC,
# $CXX, $CFLAGS and $CXXFLAGS, against $LIB_FUZZING_ENGINE, into $OUT with a corpus for each.
source=$(cd "$(dirname "$0")/../.." && pwd)
work=${WORK:-$(mktemp -d)}

# The player is left out: the libraries that it reads files with are not built for fuzzing there.
cmake -S "$source" -B "$work" -G Ninja -DCMAKE_BUILD_TYPE=None \
    -DCMAKE_CXX_COMPILER="$CXX" -DCMAKE_CXX_FLAGS="$CXXFLAGS" \
    -DLIB_FUZZING_ENGINE="$LIB_FUZZING_ENGINE" -DLUMALANE_FUZZ=ON
cmake --build "$work" --target fuzz
for program in "$work"/fuzz/*; do
    target=${program##*/}
    cp "$program" "$OUT/"
    (cd "$source/tests/fuzz/corpus/$target" && zip -q -j "$OUT/${target}_seed_corpus.zip" ./*)
done
