"""Just enough of two wire protocols to see a client's statements and whether a COMMIT was carried out.

A wire cuts what a client sends into frames, and tells which frame stores something: a COMMIT after a change, or a
change while every statement is stored by itself.
"""
import re
import struct

COMMIT = re.compile(r"\s*(?:COMMIT|END)\b", re.IGNORECASE)
BEGIN = re.compile(r"\s*(?:BEGIN|START\s+TRANSACTION)\b", re.IGNORECASE)
ROLLBACK = re.compile(r"\s*(?:ROLLBACK|ABORT)\b(?!\s+TO\b)", re.IGNORECASE)
CHANGE = re.compile(r"\s*(?:INSERT|UPDATE|DELETE|REPLACE|CREATE|ALTER|DROP)\b", re.IGNORECASE)
AUTOCOMMIT = re.compile(r"\s*SET\s+(?:@@)?(?:SESSION\s+|SESSION\.)?AUTOCOMMIT\s*=\s*(\w+)", re.IGNORECASE)


class Transactions:
    """Follows a client's statements: which of them stores something."""

    def __init__(self):
        self.autocommit = True
        self.open = False
        self.changed = False

    def stores(self, text):
        return any([self._stores_one(statement) for statement in text.split(";") if statement.strip()])

    def _stores_one(self, statement):
        if COMMIT.match(statement):
            changed = self.changed
            self._end()
            return changed
        if ROLLBACK.match(statement):
            self._end()
        elif BEGIN.match(statement):
            self.open = True
        elif setting := AUTOCOMMIT.match(statement):
            self.autocommit = setting.group(1).lower() in ("1", "on", "true")
        elif CHANGE.match(statement):
            self.changed = self.open or not self.autocommit
            return not self.changed
        return False

    def _end(self):
        self.open = self.changed = False


class PostgresWire:
    """Client frames are a type byte and a length; the first ones, before the server knows the client, have no type."""

    ENCRYPTION_REQUESTS = (80877103, 80877104)

    def __init__(self):
        self.buffer = b""
        self.started = False
        self.transactions = Transactions()
        self.statements = {}  # prepared ones by name
        self.portal = ""  # the text of the statement bound last

    def frames(self, data):
        """The whole frames that the data completes; what is left of it waits for more."""
        self.buffer += data
        found = []
        while (size := self._size()) and len(self.buffer) >= size:
            found.append(self.buffer[:size])
            self.buffer = self.buffer[size:]
            if not self.started:
                self.started = struct.unpack_from("!I", found[-1], 4)[0] not in self.ENCRYPTION_REQUESTS
        return found

    def _size(self):
        """Of the next frame; 0 when not even that is known yet."""
        if not self.started:
            return struct.unpack_from("!I", self.buffer)[0] if len(self.buffer) >= 8 else 0
        return 1 + struct.unpack_from("!I", self.buffer, 1)[0] if len(self.buffer) >= 5 else 0

    def stores(self, frame):
        return (text := self.statement(frame)) is not None and self.transactions.stores(text)

    def statement(self, frame):
        """The text that the frame executes, or None."""
        kind, body = frame[:1], frame[5:]
        if kind == b"Q":
            return body.rstrip(b"\0").decode("utf-8", "replace")
        if kind == b"P":
            name, text = body.split(b"\0")[:2]
            self.statements[name] = text.decode("utf-8", "replace")
        elif kind == b"B":
            self.portal = self.statements.get(body.split(b"\0")[1], "")
        elif kind == b"E":
            return self.portal
        return None

    def hear(self, data):
        """What the server says; here a client gives the names itself."""

    @staticmethod
    def answer(data):
        """What the whole answer to a COMMIT says: True carried out, False not, None when it is not whole yet. A
        transaction that had failed is answered with ROLLBACK."""
        done, position = False, 0
        while len(data) >= position + 5:
            size = 1 + struct.unpack_from("!I", data, position + 1)[0]
            frame = data[position:position + size]
            if len(frame) < size:
                return None
            if frame[:1] == b"C":
                done = not frame[5:].startswith(b"ROLLBACK")
            elif frame[:1] == b"E":
                done = False
            elif frame[:1] == b"Z":
                return done
            position += size
        return None


class MariaDbWire:
    """Frames have a length of three bytes and a number. Whatever a client sends on its own account has number 0."""

    QUERY, PREPARE, EXECUTE = 0x03, 0x16, 0x17
    LAST = b"\xff" * 4  # in the place of a number: the statement that was prepared last

    def __init__(self):
        self.buffer = b""
        self.transactions = Transactions()
        self.asked = None  # the text of a statement whose number the server is about to tell
        self.told = b""
        self.prepared = {}  # texts by number

    def frames(self, data):
        self.buffer += data
        found = []
        while len(self.buffer) >= 4 and len(self.buffer) >= (size := 4 + int.from_bytes(self.buffer[:3], "little")):
            found.append(self.buffer[:size])
            self.buffer = self.buffer[size:]
        return found

    def stores(self, frame):
        return (text := self.statement(frame)) is not None and self.transactions.stores(text)

    def statement(self, frame):
        if len(frame) < 5 or frame[3] != 0:
            return None
        if frame[4] == self.QUERY:
            return frame[5:].decode("utf-8", "replace")
        if frame[4] == self.PREPARE:
            self.asked, self.told = frame[5:].decode("utf-8", "replace"), b""
            self.prepared[self.LAST] = self.asked
        elif frame[4] == self.EXECUTE:
            return self.prepared.get(frame[5:9])
        return None

    def hear(self, data):
        """What the server says, of which only the number of a prepared statement matters."""
        if self.asked is None:
            return
        self.told += data
        if len(self.told) >= 9:
            if self.told[4] == 0:
                self.prepared[self.told[5:9]] = self.asked
            self.asked = None

    @staticmethod
    def answer(data):
        """As PostgresWire's."""
        if len(data) < 5 or len(data) < 4 + int.from_bytes(data[:3], "little"):
            return None
        return data[4] == 0x00


WIRES = {"postgres": PostgresWire, "mariadb": MariaDbWire}
