#!/usr/bin/env bash
# usage: label-all.sh FOLDER OUT [SCALE]
#   Draws the models (*.inp) in FOLDER, labels these drawings and those (*.dxf) in FOLDER, brings
#   labels that are there already up to date, and makes a picture of each: OUT/drawn, OUT/labelled,
#   OUT/pictures. FOLDER stays as it is. SCALE of new drawings: 1000 for 1:1000, the default.
#   A drawing that fails leaves the others alone; the exit status is then 1.
set -uo pipefail
if [ $# -lt 2 ] || [ ! -d "$1" ]; then
  sed -n '2,6s/^# \{0,1\}//p' "$0" >&2
  exit 2
fi
folder=${1%/} out=${2%/} scale=${3:-1000}
status=0
shopt -s nullglob

models=("$folder"/*.inp)
if [ ${#models[@]} -gt 0 ]; then
  pipenote batch import "${models[@]}" --out-dir "$out/drawn" -- --scale "$scale" || status=1
fi

drawings=("$folder"/*.dxf "$out"/drawn/*.dxf)
if [ ${#drawings[@]} -eq 0 ]; then
  echo "$folder: no models and no drawings" >&2
  exit 2
fi
# What is labelled already is brought up to date; the update tells what else is not in order.
pipenote batch label "${drawings[@]}" --out-dir "$out/labelled" || status=1
pipenote batch update "$out"/labelled/*.dxf --in-place || status=1

pipenote batch render "$out"/labelled/*.dxf --out-dir "$out/pictures" --ending png -- \
  --size 2400x2400 || status=1
exit $status
