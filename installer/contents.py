#!/usr/bin/python3
"""installer/contents.py OUT STAGE64 STAGE32: what the packages contain, as lists for the installer and as portable zips.

Both stage folders hold the same files; a difference is an error. The simulated notebook stays at home: it is for those
who have no notebook. OUT gets install-64.nsh, install-32.nsh, check.nsh, remove.nsh, size.nsh, languages.nsh and
files.txt.
"""
import pathlib
import re
import sys
import zipfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
SIMULATION = ("NotebookSim.exe", "plugins/Sim*.dll")
# A maker may have replaced these by his own.
SIBLINGS = ("CardArt.dll", "ZelMain.dll", "ZelEvnt.dll", "PrtHook.dll", "OutputSetup.exe")
TEXTS = {"LICENSE.txt": ROOT / "LICENSE"}
PORTABLE_TEXTS = {"PORTABLE.txt": ROOT / "installer" / "PORTABLE.txt"}
ZIP_TIME = (1980, 1, 1, 0, 0, 0)  # the earliest that the format knows: the same bytes from every build


def files_of(stage):
    """{name below the folder: file}, without the simulation, in the order of the names."""
    files = {path.relative_to(stage): path for path in stage.rglob("*") if path.is_file()}
    return {name.as_posix(): path for name, path in sorted(files.items())
            if not any(name.match(pattern) for pattern in SIMULATION)} | TEXTS


def windows(name):
    return str(name).replace("/", "\\")


def folders_of(names):
    """Those below the program's folder, deepest first."""
    return sorted({str(pathlib.PurePosixPath(name).parent) for name in names if "/" in name}, reverse=True)


def install_list(files):
    lines = [f'CreateDirectory "$INSTDIR\\{windows(folder)}"' for folder in reversed(folders_of(files))]
    for name, path in files.items():
        kind = "maker" if name in SIBLINGS else "own"
        lines.append(f'!insertmacro INSTALL_FILE {kind} "{windows(name)}" "{path}"')
    return lines


def remove_list(names):
    return [f'!insertmacro REMOVE_FILE "{windows(name)}"' for name in names] + \
        [f'RMDir "$INSTDIR\\{windows(folder)}"' for folder in folders_of(names)]


def language_list():
    """The product's languages in its order, each with makensis' name for it; the first is the one for all others."""
    tags = re.findall(r"<strings/([\w-]+)\.rc>", (ROOT / "src" / "res" / "Languages.rc").read_text())
    texts = {tag: (ROOT / "installer" / "strings" / f"{tag}.nsh").read_text() for tag in tags}
    names = {tag: re.search(r'LANGFILE_EXT "(\w+)"', text)[1] for tag, text in texts.items()}
    return [f'!insertmacro FENWYN_LANGUAGE "{tag}" "{name}"' for tag, name in names.items()]


def write(path, lines):
    path.write_text("\n".join(lines) + "\n")


def portable(path, files):
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as archive:
        for name, file in sorted((files | PORTABLE_TEXTS).items()):
            entry = zipfile.ZipInfo(f"Fenwyn/{name}", ZIP_TIME)
            entry.compress_type = zipfile.ZIP_DEFLATED
            entry.external_attr = 0o644 << 16
            archive.writestr(entry, file.read_bytes())


def main():
    out = pathlib.Path(sys.argv[1])
    flavours = {bits: files_of(pathlib.Path(folder).resolve()) for bits, folder in zip(("64", "32"), sys.argv[2:4])}
    names = list(flavours["64"])
    if different := set(names) ^ set(flavours["32"]):
        sys.exit(f"only in one of the stage folders: {', '.join(sorted(different))}")
    out.mkdir(parents=True, exist_ok=True)
    for bits, files in flavours.items():
        write(out / f"install-{bits}.nsh", install_list(files))
        portable(out / f"portable-{bits}.zip", files)
    write(out / "check.nsh", [f'!insertmacro CHECK_FILE "{windows(name)}"' for name in names])
    write(out / "remove.nsh", remove_list(names))
    write(out / "size.nsh", [f"!define SIZE_KB {sum(path.stat().st_size for path in flavours['64'].values()) // 1024}"])
    write(out / "languages.nsh", language_list())
    write(out / "files.txt", names)


if __name__ == "__main__":
    main()
