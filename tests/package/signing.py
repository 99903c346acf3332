"""A certificate made for a test, and what is signed with it."""
import subprocess

PASSWORD = "secret"


class Certificate:
    def __init__(self, folder):
        key, both = folder / "key.pem", folder / "both.p12"
        self._file = folder / "certificate.pem"
        subprocess.run(["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-subj", "/CN=Fenwyn test",
                        "-days", "2", "-addext", "extendedKeyUsage=codeSigning", "-keyout", key, "-out", self._file],
                       check=True, capture_output=True)
        subprocess.run(["openssl", "pkcs12", "-export", "-inkey", key, "-in", self._file, "-out", both, "-passout",
                        f"pass:{PASSWORD}"], check=True)
        # What makes ./package sign.
        self.environment = {"FENWYN_SIGN_CERT": str(both), "FENWYN_SIGN_PASSWORD": PASSWORD}

    def signed(self, file):
        """Whether the file has a sound signature of this certificate."""
        return subprocess.run(["osslsigncode", "verify", "-CAfile", self._file, file], check=False,
                              capture_output=True, text=True).returncode == 0
