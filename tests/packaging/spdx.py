"""What a bill of materials in SPDX 2.3 (JSON) must have, and whether it speaks of the files that are there."""

import hashlib
import json
import os
import re

IDENTIFIER = re.compile(r"SPDXRef-[A-Za-z0-9.-]+$")
LICENCE = re.compile(r"[A-Za-z0-9.+-]+( WITH [A-Za-z0-9.-]+)?( (OR|AND) [A-Za-z0-9.+-]+( WITH [A-Za-z0-9.-]+)?)*$")
CREATOR = re.compile(r"(Tool|Organization|Person): \S")
RELATIONS = {"DESCRIBES", "CONTAINS", "DYNAMIC_LINK", "STATIC_LINK", "GENERATED_FROM"}


def files_below(root):
    return {os.path.relpath(os.path.join(folder, name), root) for folder, _, names in os.walk(root) for name in names}


def bytes_of(path):
    with open(path, "rb") as file:
        return file.read()


def read(path):
    return json.loads(bytes_of(path))


def problems(path, root):
    """All that is wrong with the bill at `path`, which speaks of everything below `root`."""
    found = []

    def need(holds, message):
        if not holds:
            found.append(message)

    bill = read(path)
    need(bill.get("spdxVersion") == "SPDX-2.3", "spdxVersion")
    need(bill.get("dataLicense") == "CC0-1.0", "dataLicense")
    need(bill.get("SPDXID") == "SPDXRef-DOCUMENT", "SPDXID of the document")
    need(bool(bill.get("name")), "name of the document")
    need(re.match(r"https?://[^\s#]+$", bill.get("documentNamespace", "")), "documentNamespace")
    creation = bill.get("creationInfo", {})
    need(re.match(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ$", creation.get("created", "")), "created")
    need(creation.get("creators") and all(CREATOR.match(creator) for creator in creation["creators"]), "creators")

    packages, files = bill.get("packages", []), bill.get("files", [])
    identifiers = [part.get("SPDXID", "") for part in [bill, *packages, *files]]
    need(all(IDENTIFIER.match(one) for one in identifiers), "an SPDXID")
    need(len(set(identifiers)) == len(identifiers), "an SPDXID stands twice")
    for package in packages:
        name = package.get("name", "")
        need(bool(name) and "\n" not in name, "name of a package")
        need(bool(package.get("downloadLocation")), f"{name}: downloadLocation")
        need(bool(package.get("versionInfo")), f"{name}: versionInfo")
        need(bool(package.get("copyrightText")), f"{name}: copyrightText")
        for field in ("licenseConcluded", "licenseDeclared"):
            need(LICENCE.match(package.get(field, "")) and package[field] != "NOASSERTION", f"{name}: {field}")
        need(package.get("filesAnalyzed") is (name == "carvelot"), f"{name}: filesAnalyzed")

    # Every file, with the sums that it has.
    own = os.path.relpath(path, root)
    told = {file.get("fileName", ""): file for file in files}
    need(set(told) == {"./" + name for name in files_below(root) - {own}},
         f"files: {sorted(set(told) ^ {'./' + name for name in files_below(root) - {own}})}")
    first_sums = []
    for name, file in told.items():
        sums = {entry["algorithm"]: entry["checksumValue"] for entry in file.get("checksums", [])}
        content = bytes_of(os.path.join(root, name)) if os.path.exists(os.path.join(root, name)) else b""
        first_sums.append(hashlib.sha1(content).hexdigest())
        need(sums.get("SHA1") == first_sums[-1], f"{name}: SHA1")
        need(sums.get("SHA256") == hashlib.sha256(content).hexdigest(), f"{name}: SHA256")
        need(LICENCE.match(file.get("licenseConcluded", "")), f"{name}: licenseConcluded")
        need(bool(file.get("copyrightText")), f"{name}: copyrightText")
    whole = [package for package in packages if package.get("name") == "carvelot"]
    need(len(whole) == 1, "one package is ours")
    if whole:
        code = whole[0].get("packageVerificationCode", {})
        need(code.get("packageVerificationCodeValue") == hashlib.sha1("".join(sorted(first_sums)).encode()).hexdigest(),
             "packageVerificationCode")
        need(code.get("packageVerificationCodeExcludedFiles") == ["./" + own], "the bill is the one file that is left out")

    # Everything hangs together.
    relations = [(relation["spdxElementId"], relation["relationshipType"], relation["relatedSpdxElement"])
                 for relation in bill.get("relationships", [])]
    for one, kind, other in relations:
        need(one in identifiers and other in identifiers, f"{one} {kind} {other}: there is no such element")
        need(kind in RELATIONS, f"{kind}: no relation of ours")
    if whole:
        need(("SPDXRef-DOCUMENT", "DESCRIBES", whole[0]["SPDXID"]) in relations, "DESCRIBES")
        contained = {other for one, kind, other in relations if kind == "CONTAINS" and one == whole[0]["SPDXID"]}
        need(contained == {file["SPDXID"] for file in files}, "CONTAINS")
    linked = {other for _, kind, other in relations if kind.endswith("_LINK") or kind == "GENERATED_FROM"}
    need(linked == {package["SPDXID"] for package in packages if package not in whole}, "a library that nothing is linked to")
    return found


def libraries_of(path, program):
    """The names of all libraries that the bill says a program is linked to or holds."""
    bill = read(path)
    names = {package["SPDXID"]: package["name"] for package in bill["packages"]}
    file = next(file["SPDXID"] for file in bill["files"] if file["fileName"].endswith("/bin/" + program))
    return {names[relation["relatedSpdxElement"]] for relation in bill["relationships"]
            if relation["spdxElementId"] == file and relation["relationshipType"].endswith("_LINK")}
