#!/usr/bin/python3
"""installer/manifests.py VERSION URL OUT: the manifests for two package managers of Windows, with the hashes of the files
in OUT: winget installs the setup program, scoop unpacks the portable zips. URL: the folder where the files will be."""
import hashlib
import json
import pathlib
import sys

NAME = "KESTOVA.Fenwyn"
SUMMARY = "Cards on the screen for the function keys of a notebook"
LICENSE = "MIT"
WINGET_FORMAT = "1.6.0"


def sha256(path):
    return hashlib.sha256(path.read_bytes()).hexdigest()


def winget(version, url, setup):
    """{file name: text}"""
    head = f"PackageIdentifier: {NAME}\nPackageVersion: {version}\n"

    def tail(kind):
        return f"ManifestType: {kind}\nManifestVersion: {WINGET_FORMAT}\n"
    installers = "".join(
        f"""- Architecture: x64
  Scope: {scope}
  InstallerUrl: {url}/{setup.name}
  InstallerSha256: {sha256(setup).upper()}
  InstallerSwitches:
    Custom: /{switch}
""" for scope, switch in (("user", "CurrentUser"), ("machine", "AllUsers")))
    return {
        f"{NAME}.yaml": head + "DefaultLocale: en-US\n" + tail("version"),
        f"{NAME}.locale.en-US.yaml": head + f"""PackageLocale: en-US
Publisher: KESTOVA
PackageName: Fenwyn
License: {LICENSE}
ShortDescription: {SUMMARY}
""" + tail("defaultLocale"),
        f"{NAME}.installer.yaml": head + f"""InstallerType: nullsoft
MinimumOSVersion: 6.1.7601.0
UpgradeBehavior: install
Installers:
{installers}""" + tail("installer"),
    }


def scoop(version, url, zips):
    manifest = {
        "version": version,
        "description": SUMMARY,
        "homepage": url,
        "license": LICENSE,
        "architecture": {f"{bits}bit": {"url": f"{url}/{file.name}", "hash": sha256(file)}
                         for bits, file in zips.items()},
        "extract_dir": "Fenwyn",
        "bin": "FenwynCheck.exe",
        "shortcuts": [["Fenwyn.exe", "Fenwyn"], ["FenwynSettings.exe", "Fenwyn Settings"]],
        "post_install": "& \"$dir\\FenwynCheck.exe\" --register --user",
        "pre_uninstall": "& \"$dir\\FenwynCheck.exe\" --unregister --user",
    }
    return json.dumps(manifest, indent=4) + "\n"


def main():
    version, url, out = sys.argv[1], sys.argv[2].rstrip("/"), pathlib.Path(sys.argv[3])
    folder = out / "winget"
    folder.mkdir()
    for name, text in winget(version, url, out / f"Fenwyn-{version}-Setup.exe").items():
        (folder / name).write_text(text)
    zips = {bits: out / f"Fenwyn-{version}-portable-{bits}.zip" for bits in (64, 32)}
    (out / "fenwyn.json").write_text(scoop(version, url, zips))


if __name__ == "__main__":
    main()
