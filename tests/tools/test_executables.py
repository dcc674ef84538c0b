"""What the built Windows programs ask of the system, read from their headers."""
import pathlib
import struct
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
PROGRAMS = ("Melvorin.exe", "melvorin-cli.exe")

# Windows takes these from its own folder for every process, whatever lies beside the program.
ALLOWED = {
    "advapi32.dll", "comctl32.dll", "comdlg32.dll", "gdi32.dll", "kernel32.dll", "msvcrt.dll",
    "ole32.dll", "oleaut32.dll", "shell32.dll", "user32.dll",
}

HIGH_ENTROPY_VA, DYNAMIC_BASE, NX_COMPAT = 0x0020, 0x0040, 0x0100
RELOCS_STRIPPED = 0x0001
WRITABLE, EXECUTABLE = 0x80000000, 0x20000000


class Program:
    """A PE file; see the comments for where the numbers are from its format."""

    def __init__(self, path):
        self.bytes = path.read_bytes()
        at = self.number("I", 0x3C)
        if self.bytes[at:at + 4] != b"PE\0\0":
            raise ValueError(f"{path} is no program for Windows")
        self.file_flags = self.number("H", at + 22)
        optional = at + 24
        self.is_64 = self.number("H", optional) == 0x20B
        self.image_base = self.number("Q", optional + 24) if self.is_64 else \
            self.number("I", optional + 28)
        self.flags = self.number("H", optional + 70)
        self.directories = optional + (112 if self.is_64 else 96)
        self.sections = []
        table = optional + self.number("H", at + 20)
        for entry in range(table, table + 40 * self.number("H", at + 6), 40):
            name = self.bytes[entry:entry + 8].rstrip(b"\0").decode()
            size, address, _, offset = struct.unpack_from("<4I", self.bytes, entry + 8)
            self.sections.append((name, address, size, offset, self.number("I", entry + 36)))

    def number(self, kind, at):
        return struct.unpack_from("<" + kind, self.bytes, at)[0]

    def directory(self, index):
        return struct.unpack_from("<II", self.bytes, self.directories + 8 * index)

    def offset(self, address):
        for _, start, size, offset, _ in self.sections:
            if start <= address < start + size:
                return address - start + offset
        raise ValueError(f"no section holds {address:#x}")

    def imports(self):
        names = set()
        for index, size, name_at in ((1, 20, 12), (13, 32, 4)):  # linked, and loaded on first use
            entry = self.directory(index)[0] and self.offset(self.directory(index)[0])
            while entry and (name := self.number("I", entry + name_at)):
                start = self.offset(name)
                names.add(self.bytes[start:self.bytes.index(b"\0", start)].decode().lower())
                entry += size
        return names

    def relocations(self):
        """How many places are corrected when the program is loaded somewhere else."""
        address, size = self.directory(5)
        at, end, count = self.offset(address), self.offset(address) + size, 0
        while at < end:
            block = self.number("I", at + 4)
            entries = struct.unpack_from(f"<{(block - 8) // 2}H", self.bytes, at + 8)
            count += sum(1 for entry in entries if entry >> 12 == (10 if self.is_64 else 3))
            at += block
        return count


class Executables(unittest.TestCase):
    def programs(self):
        for build, is_64 in (("win-x64", True), ("win-x86", False)):
            for name in PROGRAMS:
                with self.subTest(build=build, program=name):
                    program = Program(ROOT / "build" / build / name)
                    self.assertEqual(program.is_64, is_64)
                    yield program

    def test_imports_are_the_systems_own(self):
        for program in self.programs():
            self.assertEqual(program.imports() - ALLOWED, set())
            self.assertIn("kernel32.dll", program.imports())

    def test_code_lies_anywhere_and_data_is_not_run(self):
        for program in self.programs():
            wanted = DYNAMIC_BASE | NX_COMPAT | (HIGH_ENTROPY_VA if program.is_64 else 0)
            self.assertEqual(program.flags & wanted, wanted, hex(program.flags))
            self.assertEqual(program.file_flags & RELOCS_STRIPPED, 0)
            # Nothing that runs may be written, and all that has an address in it can be moved.
            for name, _, _, _, flags in program.sections:
                self.assertNotEqual(flags & (WRITABLE | EXECUTABLE), WRITABLE | EXECUTABLE, name)
            self.assertGreater(program.relocations(), 1000)
            if program.is_64:
                self.assertGreater(program.image_base, 0xFFFFFFFF)

    def test_overruns_of_the_stack_are_noticed(self):
        for program in self.programs():
            self.assertIn(b"stack smashing detected", program.bytes)


if __name__ == "__main__":
    unittest.main()
