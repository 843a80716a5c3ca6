"""What the system must know to find the library, read from the library's manifest: the rows of an installer's registry table.

The manifest says the same for activation without registration, so that there is one place for it; a test compares the rows
with what the library writes when it registers itself.
"""

import xml.etree.ElementTree as xml
from typing import NamedTuple

NAMESPACE = {"asm": "urn:schemas-microsoft-com:asm.v1"}
CLASSES = "Software\\Classes\\"
LIBRARY_NAME = "Kestrel code rules"

LIBRARY = "[INSTALLDIR]Kestrel.dll"
FOLDER = "[INSTALLDIR]"


class Value(NamedTuple):
    """A value of the registry; without a name it is the key's own."""

    key: str
    name: str
    text: str


def class_values(declared):
    """Of one class: the names in the shared part of the registry, and the key in the part of this bitness."""
    clsid, description = declared.get("clsid"), declared.get("description")
    versioned = declared.get("progid")
    plain = declared.find("asm:progid", NAMESPACE).text
    shared = [Value(f"{plain}\\CurVer", "", versioned)]
    for name in (plain, versioned):
        shared += [Value(name, "", description), Value(f"{name}\\CLSID", "", clsid)]
    key = f"CLSID\\{clsid}"
    own = [
        Value(key, "", description),
        Value(f"{key}\\InprocServer32", "", LIBRARY),
        Value(f"{key}\\InprocServer32", "ThreadingModel", declared.get("threadingModel")),
        Value(f"{key}\\ProgID", "", versioned),
        Value(f"{key}\\Programmable", "", ""),
        Value(f"{key}\\TypeLib", "", declared.get("tlbid")),
        Value(f"{key}\\Version", "", "1.0"),
        Value(f"{key}\\VersionIndependentProgID", "", plain),
    ]
    return shared, own


def interface_values(declared):
    key = f"Interface\\{declared.get('iid')}"
    return [
        Value(key, "", declared.get("name")),
        Value(f"{key}\\ProxyStubClsid32", "", declared.get("proxyStubClsid32")),
        Value(f"{key}\\TypeLib", "", declared.get("tlbid")),
        Value(f"{key}\\TypeLib", "Version", "1.0"),
    ]


def library_values(declared, bits):
    version = declared.get("version")
    key = f"TypeLib\\{declared.get('tlbid')}\\{version}"
    shared = [
        Value(key, "", f"{LIBRARY_NAME} {version}"),
        Value(f"{key}\\FLAGS", "", "0"),
        Value(f"{key}\\HELPDIR", "", FOLDER),
    ]
    return shared, [Value(f"{key}\\0\\win{bits}", "", LIBRARY)]


def registration(manifest, bits):
    """(what both bitnesses write, what this one alone writes), with keys below the root of all software."""
    root = xml.parse(manifest).getroot()
    parts = [class_values(declared) for declared in root.iterfind("asm:file/asm:comClass", NAMESPACE)]
    parts.append(library_values(root.find("asm:file/asm:typelib", NAMESPACE), bits))
    shared = [value for part in parts for value in part[0]]
    own = [value for part in parts for value in part[1]]
    for declared in root.iterfind("asm:comInterfaceExternalProxyStub", NAMESPACE):
        own += interface_values(declared)
    return tuple([value._replace(key=CLASSES + value.key) for value in values] for values in (shared, own))
