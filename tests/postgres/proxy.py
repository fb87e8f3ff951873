"""A proxy before a PostgreSQL server on a socket: it delays what passes and counts the round trips of the client.

A client waits for the server where it has sent a Query, a Sync or a CopyDone message, so these are counted.
"""

import asyncio
import pathlib
import struct
import threading
import time

PORT = 5432
CHUNK = 1 << 16


class Messages:
    """Follows a client's messages over the pieces in which they come."""

    def __init__(self):
        self.left = b""
        self.started = False
        self.waits = 0

    def take(self, data):
        self.left += data
        while True:
            head = 1 if self.started else 0
            if len(self.left) < head + 4:
                return
            length = head + struct.unpack_from(">i", self.left, head)[0]
            if len(self.left) < length:
                return
            if self.started and self.left[:1] in (b"Q", b"S", b"c"):
                self.waits += 1
            self.started = True
            self.left = self.left[length:]


class Proxy:
    """Listens in a folder of its own, in a thread, until it is closed; delay: seconds each way."""

    def __init__(self, folder, server_folder, delay=0.001):
        self.address = str(pathlib.Path(folder) / f".s.PGSQL.{PORT}")
        self.server = str(pathlib.Path(server_folder) / f".s.PGSQL.{PORT}")
        self.delay = delay
        self.clients = []
        self.loop = asyncio.new_event_loop()
        self.ready = threading.Event()
        self.thread = threading.Thread(target=self.serve, daemon=True)

    def __enter__(self):
        self.thread.start()
        self.ready.wait()
        return self

    def __exit__(self, *_):
        self.loop.call_soon_threadsafe(self.loop.stop)
        self.thread.join()

    def round_trips(self):
        return sum(client.waits for client in self.clients)

    def serve(self):
        asyncio.set_event_loop(self.loop)
        self.loop.run_until_complete(asyncio.start_unix_server(self.connect, self.address))
        self.ready.set()
        self.loop.run_forever()
        # What has ended may not have been passed on yet.
        left = asyncio.all_tasks(self.loop)
        for task in left:
            task.cancel()
        self.loop.run_until_complete(asyncio.gather(*left, return_exceptions=True))
        self.loop.close()

    async def connect(self, reader, writer):
        to_server = await asyncio.open_unix_connection(self.server)
        messages = Messages()
        self.clients.append(messages)
        try:
            await asyncio.gather(self.pass_on(reader, to_server[1], messages.take),
                                 self.pass_on(to_server[0], writer, lambda _: None))
        except asyncio.CancelledError:
            pass

    async def pass_on(self, reader, writer, look):
        """Each piece arrives the delay after it was sent, however many are under way."""
        under_way = asyncio.Queue()

        async def deliver():
            while True:
                arrival, data = await under_way.get()
                await asyncio.sleep(max(0.0, arrival - time.monotonic()))
                if not data:
                    break
                writer.write(data)
                await writer.drain()
            writer.close()

        delivery = asyncio.ensure_future(deliver())
        data = b"begin"
        while data:
            try:
                data = await reader.read(CHUNK)
            except ConnectionError:
                data = b""
            look(data)
            under_way.put_nowait((time.monotonic() + self.delay, data))
        try:
            await delivery
        except ConnectionError:
            pass
