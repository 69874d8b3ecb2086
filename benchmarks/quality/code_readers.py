"""Libraries that read codes of every kind: which pictures of a list are read with their text.

Two for each kind: ZXing C++ and zbar; libdmtx for Data Matrix; the ZXing of Java for PDF417 and Aztec.
"""
import pathlib
import subprocess
import tempfile

import numpy
import zxingcpp
from PIL import ImageOps

import scanners

HERE = pathlib.Path(__file__).resolve().parent
JAVA_LIBRARY = "/usr/share/java/core.jar"
FORMATS = {"qr": "QRCode", "code128": "Code128", "ean13": "EAN13", "itf": "ITF",
           "pdf417": "PDF417", "aztec": "Aztec", "datamatrix": "DataMatrix"}
ZBAR_NAMES = {"qr": "qrcode", "code128": "code128", "ean13": "ean13", "itf": "i25"}
JAVA_NAMES = {"pdf417": "PDF_417", "aztec": "AZTEC"}


def margined(pictures, paper):
    return [ImageOps.expand(picture, scanners.MARGIN, paper) for picture in pictures]


def read_by_zxing(kind, pictures, texts, paper):
    wanted = getattr(zxingcpp.BarcodeFormat, FORMATS[kind])
    found = [zxingcpp.read_barcode(numpy.asarray(picture), formats=wanted)
             for picture in margined(pictures, paper)]
    return [bool(code) and code.text == text for code, text in zip(found, texts)]


def read_by_program(kind, pictures, texts, paper):
    """The texts of a list are all different, so that a content tells its picture."""
    with tempfile.TemporaryDirectory() as folder:
        paths = scanners.saved(pictures, pathlib.Path(folder), paper)
        contents = set(scanners.read_data_matrix(paths) if kind == "datamatrix"
                       else scanners.read_bars(ZBAR_NAMES[kind], paths))
    return [text in contents for text in texts]


def read_by_java(kind, pictures, texts, paper):
    stream = b"".join(f"{JAVA_NAMES[kind]} {each.width} {each.height}\n".encode() + each.tobytes()
                      for each in margined(pictures, paper))
    done = subprocess.run(["java", "-cp", JAVA_LIBRARY, HERE / "ReadCodes.java"], input=stream,
                          stdout=subprocess.PIPE, check=True)
    contents = [bytes.fromhex(line) for line in done.stdout.decode().split("\n")[:-1]]
    return [content == text.encode() for content, text in zip(contents, texts)]


def readers_of(kind):
    """{name: function}"""
    if kind in JAVA_NAMES:
        return {"ZXing C++": read_by_zxing, "ZXing of Java": read_by_java}
    second = "libdmtx" if kind == "datamatrix" else "zbar"
    return {"ZXing C++": read_by_zxing, second: read_by_program}
