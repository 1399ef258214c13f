# SPDX-License-Identifier: MIT
"""Writes the bill of materials of Debian packages: what was linked into each, as SPDX 2.3 JSON.

    make_sbom.py BUILD_FOLDER PACKAGE.deb...

For each package a file of its name with .spdx.json: the libraries that its programs load, by the
entries of the files themselves, and the header libraries that were compiled in, by the build's record of
what each file included. Equal packages from equal systems give equal files; the time is the package's own
(SOURCE_DATE_EPOCH).
"""
import datetime
import hashlib
import json
import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path

# Headers of the compiler and the C library are the platform, not a part of the program.
PLATFORM = re.compile(r"^(libstdc\+\+-\d+-dev|libgcc-\d+-dev|libc6-dev|linux-libc-dev|libc-dev-bin)$")


def output(*command, **options):
    return subprocess.run(command, check=True, text=True, stdout=subprocess.PIPE, **options).stdout


def owners(paths):
    """The Debian package that each file came with."""
    found = {}
    paths = sorted(paths)
    for first in range(0, len(paths), 500):
        done = subprocess.run(["dpkg-query", "-S", *paths[first:first + 500]], check=False, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        for line in done.stdout.splitlines():
            name, _, path = line.partition(": ")
            found[path] = name.split(",")[0].partition(":")[0]
    return found


def libraries():
    """File by library name, as the loader finds them."""
    rows = re.findall(r"^\s*(\S+) \(.*\) => (\S+)$", output("/sbin/ldconfig", "-p"), re.MULTILINE)
    return dict(reversed(rows))


def linked(folder):
    """The libraries that the package's files load."""
    names = set()
    for path in folder.rglob("*"):
        if path.is_file() and not path.is_symlink() and path.read_bytes()[:4] == b"\x7fELF":
            names |= set(re.findall(r"\(NEEDED\).*\[(.*)\]", output("readelf", "-d", str(path))))
    places = libraries()
    # dpkg knows a file by the place it was packaged for, which need not be where the link leads.
    candidates = {}
    for name in sorted(names):
        real = os.path.realpath(places[name])
        candidates[name] = [real, real.removeprefix("/usr"), "/usr" + real]
    known = owners({path for paths in candidates.values() for path in paths})
    return sorted({next(known[path] for path in paths if path in known) for paths in candidates.values()})


def compiled_in(build):
    """Packages whose headers were compiled, by the program folders that did."""
    headers = {}
    target = None
    for line in output("ninja", "-C", str(build), "-t", "deps").splitlines():
        if not line.startswith(" "):
            target = line.partition(":")[0]
        elif line.strip().startswith("/usr/"):
            headers.setdefault(os.path.realpath(line.strip()), set()).add(target.partition("/")[0])
    result = {}
    for path, package in owners(headers).items():
        if not PLATFORM.match(package):
            result.setdefault(package, set()).update(headers[path])
    return result


def element(name, version, **more):
    return {"SPDXID": "SPDXRef-Package-" + re.sub(r"[^A-Za-z0-9.-]", "-", name), "name": name,
            "versionInfo": version, "downloadLocation": "NOASSERTION", "filesAnalyzed": False,
            "licenseConcluded": "NOASSERTION", "licenseDeclared": "NOASSERTION",
            "copyrightText": "NOASSERTION", **more}


def version_and_source(package):
    version, source = output("dpkg-query", "-W", "-f", "${Version} ${source:Package}\n", package).split("\n")[0].split()
    return version, source


def bill(deb, build):
    name, version = output("dpkg-deb", "-f", str(deb), "Package", "Version").strip().split("\n")
    name, version = name.partition(": ")[2], version.partition(": ")[2]
    digest = hashlib.sha256(deb.read_bytes()).hexdigest()
    root = element(name, version, licenseDeclared="MIT", supplier="Organization: The Quillmere authors",
                   packageFileName=deb.name, checksums=[{"algorithm": "SHA256", "checksumValue": digest}])
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run(["dpkg-deb", "-x", str(deb), folder], check=True)
        loads = linked(Path(folder))
    part = "sandbox" if name.endswith("-sandbox") else "src"
    # Of a library that is loaded the headers are no part of their own.
    loaded_sources = {version_and_source(package)[1] for package in loads}
    included = sorted(package for package, folders in compiled_in(build).items()
                      if part in folders and version_and_source(package)[1] not in loaded_sources)
    packages, relations = [root], [("SPDXRef-DOCUMENT", "DESCRIBES", root)]
    for others, relation in ((loads, "DYNAMIC_LINK"), (included, "STATIC_LINK")):
        for package in others:
            other_version, _ = version_and_source(package)
            other = element(package, other_version, externalRefs=[{
                "referenceCategory": "PACKAGE-MANAGER", "referenceType": "purl",
                "referenceLocator": f"pkg:deb/debian/{package}@{other_version}"}])
            packages.append(other)
            relations.append((root["SPDXID"], relation, other))
    when = datetime.datetime.fromtimestamp(int(os.environ["SOURCE_DATE_EPOCH"]), datetime.timezone.utc)
    return {
        "spdxVersion": "SPDX-2.3", "dataLicense": "CC0-1.0", "SPDXID": "SPDXRef-DOCUMENT",
        "name": f"{name}-{version}", "documentNamespace": f"urn:quillmere:{name}:{version}:{digest}",
        "creationInfo": {"created": when.strftime("%Y-%m-%dT%H:%M:%SZ"),
                         "creators": ["Tool: packaging/make_sbom.py", "Organization: The Quillmere authors"]},
        "packages": packages,
        "relationships": [{"spdxElementId": one, "relationshipType": relation, "relatedSpdxElement": other["SPDXID"]}
                          for one, relation, other in relations]}


def main():
    build = Path(sys.argv[1])
    for deb in map(Path, sys.argv[2:]):
        document = bill(deb, build)
        target = deb.with_suffix(".spdx.json")
        target.write_text(json.dumps(document, indent=1) + "\n", encoding="utf-8")
        print(f"{target.name}: {len(document['packages']) - 1} packages are part of it")


if __name__ == "__main__":
    main()
