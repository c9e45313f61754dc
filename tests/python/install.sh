#!/usr/bin/env bash
# Installs the package into a virtual environment that sees the system's packages, and uses it there
# without any path set: the module finds its libraries, and the package the sandbox beside it.
#
#     install.sh BUILD PYTHON SANDBOX
set -euo pipefail
build=$1 python=$2 sandbox=$3
environment=$build/python-environment
rm -rf "$environment"
"$python" -m venv --system-site-packages --without-pip "$environment"
for component in Runtime Python; do
  cmake --install "$build" --prefix "$environment" --component $component >/dev/null
done
install -D "$sandbox" "$environment/bin/lumo-sandbox"

cd /
env -u PYTHONPATH -u LUMO_SANDBOX -u LD_LIBRARY_PATH "$environment/bin/python" - "$environment" <<'END'
import os, sys
import lumo

with lumo.sandbox() as server:
    program = os.readlink(f"/proc/{server.pid}/exe")
    os.environ["LUMO_URL"] = server.url
    materials = lumo.connect()["ENG_MATERIALS"]["Materials"]
    frame = materials.where("density < 3000 kg/m^3").to_pandas(["Density", "Young's modulus"])
prefix = os.path.realpath(sys.argv[1])
libraries = {line.split()[-1] for line in open("/proc/self/maps") if "/liblumo" in line}
places = [os.path.realpath(lumo.__file__), program, *libraries]
assert len(libraries) == 2, libraries
assert all(place.startswith(prefix) for place in places), places
assert len(frame) > 50
END
