-- The tables of the gapless issuer for SQL Server (KestrelLedger.cls beside this file). Not run by the tests.
--
-- A binary collation: series and codes are compared character by character, as the component compares them. Under the
-- server's usual collation "inv-1" and "INV-1" are one key, and codes would be refused that nobody has issued.
CREATE TABLE codes (
    code   NVARCHAR(100) COLLATE Latin1_General_BIN2 NOT NULL PRIMARY KEY,
    ticket NVARCHAR(100) COLLATE Latin1_General_BIN2 NOT NULL CONSTRAINT one_code_for_a_ticket UNIQUE
);
CREATE TABLE numbers (
    series NVARCHAR(100) COLLATE Latin1_General_BIN2 NOT NULL,
    number BIGINT NOT NULL,
    code   NVARCHAR(100) COLLATE Latin1_General_BIN2 NOT NULL REFERENCES codes (code),
    PRIMARY KEY (series, number)
);
CREATE TABLE rules (
    name       NVARCHAR(100) COLLATE Latin1_General_BIN2 NOT NULL PRIMARY KEY,
    definition NVARCHAR(MAX) NOT NULL
);
