# SPDX-License-Identifier: MIT
"""Migrates, renames and drops with quillmere-cli, on sandbox databases in a fresh folder.

Usage: schema_test.py FOLDER-OF-THE-PROGRAMS [unittest arguments]
"""

import json
import unittest

from cli_test import Site

USERS = "".join(f"create user {name} identified by x;\n" for name in ("SHOP", "CRM", "LAB"))
# A key whose columns stand in another order than the table's, referenced by two other owners.
TABLES = USERS + """
create table SHOP.ORDERS (ID number(10), PART number(3), NAME varchar2(60) default 'none' not null,
  AMOUNT number(12,2), FREE number, AT date, RATE float, CODE char(4), TXT clob, PIC blob,
  constraint ORDERS_PK primary key (PART, ID));
create table SHOP.PLAIN (A varchar2(10));
create index SHOP.ORDERS_NAME on SHOP.ORDERS(NAME, AT);
create index SHOP.ORDERS_CODE on SHOP.ORDERS(CODE);
create table CRM.VISITS (V number(5) primary key, OID number(10), OPART number(3),
  constraint VISITS_FK foreign key (OPART, OID) references SHOP.ORDERS (PART, ID));
create table LAB.TESTS (T number(5), OID number(10), OPART number(3),
  constraint TESTS_PK primary key (T),
  constraint TESTS_FK foreign key (OPART, OID) references SHOP.ORDERS (PART, ID));
"""
ORPHAN = "insert into CRM.VISITS values (%d, 77, 7);"


class Schema(Site):
    def setUp(self):
        super().setUp()
        self.work.mkdir()
        for name, script in (("A", TABLES), ("B", USERS)):
            self.sandbox("create", name, "--password-file", self.password_file)
            self.sandbox("sql", name, given=script)
            self.cli("source", "add", name, "--user", "SYS", "--mode", "SYSDBA",
                     "--password-file", self.password_file)

    def cached(self, name):
        return [sorted(json.loads(self.cli("schema", kind, name, "--json")), key=str)
                for kind in ("tables", "keys", "indexes")]

    def lists(self, name):
        self.cli("source", "refresh", name)
        return self.cached(name)

    def test_migrated_definitions_are_the_same(self):
        owners = ["--owner", "SHOP", "--owner", "CRM", "--owner", "LAB"]
        self.cli("schema", "migrate", "A", "B", "table", *owners, "--with-key", "--with-indexes")
        self.assertEqual(self.sandbox("diff", "A", "B"), "identical\n")
        self.assertEqual(self.lists("A"), self.lists("B"))
        # What does not travel: foreign keys and defaults.
        self.sandbox("sql", "A", given=ORPHAN % 1, status=1)
        self.sandbox("sql", "B", given=ORPHAN % 1)
        # Dropped on the target and made anew, without the key that was not asked for.
        self.cli("schema", "migrate", "A", "B", "table", "CRM.VISITS", "--drop-target")
        self.assertEqual(len(self.lists("B")[1]), 2)
        self.cli("schema", "migrate", "A", "B", "key", "--owner", "CRM")
        self.assertEqual(self.lists("A"), self.lists("B"))

    def test_renamed_key_keeps_its_foreign_keys(self):
        self.cli("schema", "rename", "A", "key", "SHOP.ORDERS_PK", "ORDERS_KEY",
                 text="Key: SHOP.ORDERS_PK's name changed to ORDERS_KEY")
        self.cli("schema", "rename", "A", "index", "SHOP.ORDERS_CODE", "CODES")
        self.cli("schema", "rename", "A", "table", "SHOP.PLAIN", "PLANE")
        cached = self.cached("A")
        self.assertEqual(cached, self.lists("A"))
        self.assertIn("PLANE", str(cached[0]))
        self.sandbox("sql", "A", given=ORPHAN % 1, status=1)

    def test_drop_tells_what_failed_and_goes_on(self):
        out = self.cli("schema", "drop", "A", "table", "SHOP.ORDERS", "SHOP.PLAIN", status=1,
                       text="1 of 2 failed: Drop Table ORDERS failed, reason: ")
        self.assertIn("Drop Table PLAIN successed", out)
        self.cli("schema", "drop", "A", "index", "SHOP.ORDERS_CODE")
        self.cli("schema", "drop", "A", "key", "SHOP.ORDERS_PK")
        self.sandbox("sql", "A", given=ORPHAN % 1)
        self.cli("schema", "drop", "A", "table", "SHOP.ORDERS", "--cascade")
        self.assertNotIn("SHOP", self.cli("schema", "tables", "A"))
        self.cli("schema", "drop", "A", "key", "SHOP.NONE", status=1, text="is not in the lists")
        self.assertIn("Drop Primary key ORDERS_PK successed",
                      (self.work / "error.log").read_text())


if __name__ == "__main__":
    unittest.main()
