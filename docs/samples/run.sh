# sh run.sh NAME BUILD SCRATCH [PLUGINS]: runs the sample NAME.sh as a user would, in a copy of this
# folder, with the library of BUILD installed by install.sh.
set -eu
samples=$(cd "$(dirname "$0")" && pwd)
name=$1 BUILD=$2 scratch=$3
rm -rf "$scratch"
mkdir -p "$scratch"
cp -R "$samples" "$scratch/samples"
cd "$scratch/samples"
PREFIX=$scratch/installed
export BUILD PREFIX
sh -eu install.sh >/dev/null
if [ "$name" = gstreamer ]; then
    GST_PLUGIN_PATH=$4 GST_REGISTRY=$scratch/registry SINK=fakesink sh -eu gstreamer.sh
else
    sh -eu "$name.sh" >"$scratch/printed"
    tail -n 1 "$scratch/printed" | diff convert.txt -
fi
