"""A book of empty tables that each test fills as it needs."""

from host_case import HostCase


def quoted(value):
    """A value as it stands in a statement."""
    if value is None:
        return "Null"
    return f"'{value}'" if isinstance(value, str) else str(value)


def insert(table, columns, *rows):
    """One statement a row; a row is a tuple of values."""
    return [f"Insert into {table} ({columns}) Values ({','.join(map(quoted, row))})" for row in rows]


class BareBookCase(HostCase):
    def setUp(self):
        super().setUp()
        self.new_book()

    def execute(self, *statements):
        """The host's own statements, all in one run; none may fail."""
        for answer in self.batch(*({"execute": text} for text in statements)):
            self.assertNotIn("error", answer)

    def answers(self, *calls, **others):
        """The answers to calls, each a tuple of the method and its arguments, in one run; none may fail."""
        found = self.batch(*({"method": name, "args": arguments, **others} for name, *arguments in calls))
        for answer in found:
            self.assertNotIn("error", answer)
        self.assertEqual(len(found), len(calls))
        return found

    def results(self, *calls, **others):
        return [answer["result"] for answer in self.answers(*calls, **others)]

    def result(self, method, *arguments, **others):
        return self.results((method, *arguments), **others)[0]

    def error(self, method, *arguments, **others):
        """The number of the error in which a call ends."""
        answer = self.call(method, *arguments, **others)
        self.assertNotIn("result", answer)
        return answer["error"]["number"]

    def column(self, recordset, name):
        at = [c["name"] for c in recordset["columns"]].index(name)
        return [row[at] for row in recordset["rows"]]
