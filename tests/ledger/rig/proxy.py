"""A way to a server that breaks around COMMIT, as networks do.

    PASS     nothing happens
    BEFORE   the connection is cut, the COMMIT does not reach the server
    DURING   the COMMIT reaches the server, and the connection is reset at the same moment
    AFTER    the COMMIT was carried out, and its answer does not reach the client
    LATE     the connection is cut for the client at once, and the server gets the COMMIT some time later
    SILENT   the COMMIT is carried out, and the client is left waiting for an answer
"""
import asyncio
import collections
import dataclasses
import enum
import random
import socket
import struct
import threading
import time

from rig.server import LOOPBACK, free_port
from rig.wire import WIRES

PIECE = 65536
RESET = struct.pack("ii", 1, 0)  # for SO_LINGER


class Kind(enum.Enum):
    PASS, BEFORE, DURING, AFTER, LATE, SILENT = "pass", "before", "during", "after", "late", "silent"


@dataclasses.dataclass
class Cut:
    """A late COMMIT comes after so many seconds, or as soon as other connections have sent so many frames since."""

    kind: Kind
    seconds: float = 0.0
    frames: int = 0  # 0: by the time alone


class Chances:
    """A plan by chance: each COMMIT is cut with the probability, until as many cuts of each kind are made as wanted."""

    def __init__(self, wanted, probability, seed, latest):
        self.lock = threading.Lock()  # several proxies may share a plan
        self.left = dict(wanted)
        self.probability = probability
        self.latest = latest
        self.generator = random.Random(seed)

    def __call__(self):
        with self.lock:
            return self._choose()

    def stop(self):
        """From now on nothing is cut."""
        with self.lock:
            self.left = {}

    def _choose(self):
        if not self.left or self.generator.random() >= self.probability:
            return Cut(Kind.PASS)
        kind = self.generator.choice([kind for kind, count in self.left.items() for _ in range(count)])
        self.left[kind] -= 1
        if self.left[kind] == 0:
            del self.left[kind]
        frames = self.generator.choice([0, self.generator.randint(1, 12)])
        return Cut(kind, self.generator.uniform(0.05, self.latest), frames)

    def is_done(self):
        return not self.left


class Proxy:
    """Listens on `port`; `target` is the server's port, for connections made from now on. `plan` is called for each
    COMMIT that stores something, and for what is stored without one, and returns its Cut. `made` counts the cuts by
    kind, and `stored` those that the server carried out. `before` is called with each frame of a client and the statement
    that it executes, if any, and returns the frame that goes on to the server."""

    def __init__(self, protocol, target, plan=lambda: Cut(Kind.PASS), before=None):
        self.wire = WIRES[protocol]
        self.target = target
        self.plan = plan
        self.before = before
        self.made = collections.Counter()
        self.stored = collections.Counter()
        self.frames = 0
        self.mute = False
        self.pending = 0  # cuts whose end is still to come
        self.connections = set()
        self.port = free_port()
        self.listener = None
        self.loop = asyncio.new_event_loop()
        self.thread = threading.Thread(target=self._run, daemon=True)
        self.thread.start()
        self.listen()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        self.refuse()
        self.loop.call_soon_threadsafe(self.loop.stop)
        self.thread.join()

    def listen(self):
        """Takes connections, again after refuse()."""
        self._do(self._listen())

    def refuse(self):
        """Cuts every connection there is and refuses new ones, as a machine does that is down."""
        self._do(self._refuse())

    def settle(self, longest=30):
        """Waits until every late COMMIT has reached the server and was answered."""
        end = time.monotonic() + longest
        while self.pending:
            if time.monotonic() > end:
                raise RuntimeError(f"{self.pending} late commits are still under way")
            time.sleep(0.02)

    def _do(self, coroutine):
        asyncio.run_coroutine_threadsafe(coroutine, self.loop).result()

    async def _listen(self):
        self.listener = await asyncio.start_server(self._serve, LOOPBACK, self.port)

    async def _refuse(self):
        self.listener.close()
        for connection in list(self.connections):
            connection.abort()

    def _run(self):
        asyncio.set_event_loop(self.loop)
        self.loop.set_exception_handler(lambda *_: None)  # connections that end are the purpose
        self.loop.run_forever()
        tasks = asyncio.all_tasks(self.loop)
        for task in tasks:
            task.cancel()
        self.loop.run_until_complete(asyncio.gather(*tasks, return_exceptions=True))
        self.loop.close()

    async def _serve(self, reader, writer):
        connection = Connection(self, reader, writer)
        self.connections.add(connection)
        try:
            await connection.serve()
        finally:
            self.connections.discard(connection)
            connection.abort()


class Connection:
    """One client and its connection to the server."""

    def __init__(self, proxy, reader, writer):
        self.proxy = proxy
        self.wire = proxy.wire()
        self.client = (reader, writer)
        self.server = None
        self.answers_to = None  # the cut whose answer is to be swallowed
        self.answer = b""
        self.answered = asyncio.Event()

    def abort(self):
        for end in (self.client, self.server):
            if end is not None:
                end[1].transport.abort()

    async def serve(self):
        while self.proxy.mute:
            if not await self.client[0].read(PIECE):
                return
        try:
            self.server = await asyncio.open_connection(LOOPBACK, self.proxy.target)
        except OSError:
            return
        answers = asyncio.ensure_future(self._answer())
        try:
            await self._forward()
        except OSError:
            pass
        finally:
            answers.cancel()

    async def _forward(self):
        """From the client to the server, until one of them ends or a COMMIT is cut."""
        while data := await self.client[0].read(PIECE):
            if self.proxy.mute:
                continue
            for frame in self.wire.frames(data):
                self.proxy.frames += 1
                if self.proxy.before is not None:
                    frame = await self.proxy.loop.run_in_executor(None, self.proxy.before, frame,
                                                                  self.wire.statement(frame))
                cut = self.proxy.plan() if self.wire.stores(frame) else Cut(Kind.PASS)
                if cut.kind is Kind.PASS:
                    self.server[1].write(frame)
                    continue
                self.proxy.pending += 1
                try:
                    await self._cut(cut, frame)
                finally:
                    self.proxy.made[cut.kind] += 1
                    self.proxy.pending -= 1
                return
            await self.server[1].drain()

    async def _answer(self):
        """From the server to the client; swallowed when it answers a COMMIT that is cut."""
        try:
            while data := await self.server[0].read(PIECE):
                if self.proxy.mute:
                    continue
                if self.answers_to is None:
                    self.wire.hear(data)
                    self.client[1].write(data)
                    await self.client[1].drain()
                    continue
                self.answer += data
                if (done := self.wire.answer(self.answer)) is not None:
                    self.proxy.stored[self.answers_to] += done
                    self.answered.set()
        except OSError:
            pass
        finally:
            self.answered.set()
            if self.answers_to is None:
                self.client[1].transport.abort()

    async def _cut(self, cut, frame):
        if cut.kind is Kind.BEFORE:
            return
        self.answers_to = cut.kind
        if cut.kind in (Kind.DURING, Kind.LATE):
            self._drop_client(cut.kind is Kind.DURING)
        if cut.kind is Kind.LATE:
            await self._wait_for_the_moment(cut)
        self.server[1].write(frame)
        if cut.kind is Kind.DURING:
            self.server[1].write_eof()
        await self.answered.wait()
        if cut.kind is Kind.SILENT:
            await self.client[0].read()

    def _drop_client(self, with_reset):
        if with_reset:
            self.client[1].get_extra_info("socket").setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, RESET)
        self.client[1].transport.abort()

    async def _wait_for_the_moment(self, cut):
        end = time.monotonic() + cut.seconds
        frames = self.proxy.frames + cut.frames
        while time.monotonic() < end and not (cut.frames and self.proxy.frames >= frames):
            await asyncio.sleep(0.002)
