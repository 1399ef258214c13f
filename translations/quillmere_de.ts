<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>CoreWords</name>
    <message>
        <source>Starting</source>
        <translation>Wird gestartet</translation>
    </message>
    <message>
        <source>Started</source>
        <translation>Gestartet</translation>
    </message>
    <message>
        <source>Stopping</source>
        <translation>Wird gestoppt</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>Gestoppt</translation>
    </message>
    <message>
        <source>Pausing</source>
        <translation>Wird pausiert</translation>
    </message>
    <message>
        <source>Paused</source>
        <translation>Pausiert</translation>
    </message>
    <message>
        <source>up to date</source>
        <translation>aktuell</translation>
    </message>
    <message>
        <source>behind</source>
        <translation>im Rückstand</translation>
    </message>
    <message>
        <source>failing</source>
        <translation>fehlerhaft</translation>
    </message>
    <message>
        <source>held</source>
        <translation>gesperrt</translation>
    </message>
    <message>
        <source>paused</source>
        <translation>pausiert</translation>
    </message>
    <message>
        <source>stopped</source>
        <translation>gestoppt</translation>
    </message>
    <message>
        <source>rows</source>
        <translation>Zeilen</translation>
    </message>
    <message>
        <source>commits</source>
        <translation>Commits</translation>
    </message>
    <message>
        <source>Whole transactions in the order of their commits, none of them missed however long it stays open.</source>
        <translation>Ganze Transaktionen in der Reihenfolge ihrer Commits; keine geht verloren, wie lange sie auch offen bleibt.</translation>
    </message>
    <message>
        <source>Change by change as they stand in the redo; changes of transactions that stay open over a pass can be missed without a word.</source>
        <translation>Änderung für Änderung, wie sie im Redo stehen; Änderungen von Transaktionen, die über einen Durchgang offen bleiben, können unbemerkt fehlen.</translation>
    </message>
    <message>
        <source>Connected</source>
        <translation>Verbunden</translation>
    </message>
    <message>
        <source>DisConnected</source>
        <translation>Getrennt</translation>
    </message>
    <message>
        <source>source</source>
        <translation>Quelle</translation>
    </message>
    <message>
        <source>destination</source>
        <translation>Ziel</translation>
    </message>
    <message>
        <source>disk</source>
        <translation>Festplatte</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>Oracle client</source>
        <translation>Oracle-Client</translation>
    </message>
    <message>
        <source>Working folder</source>
        <translation>Arbeitsordner</translation>
    </message>
    <message>
        <source>Synchronize Interval must &gt; 0</source>
        <translation>Das Intervall muss größer als 0 sein</translation>
    </message>
    <message>
        <source>Obligatory field can not be empty</source>
        <translation>Ein Pflichtfeld darf nicht leer sein</translation>
    </message>
    <message>
        <source>Data Source Can&apos;t be same</source>
        <translation>Quelle und Ziel dürfen nicht dieselbe Datenquelle sein</translation>
    </message>
    <message>
        <source>Only a job that follows commits can follow a container</source>
        <translation>Nur ein Auftrag, der Commits folgt, kann einem Container folgen</translation>
    </message>
    <message>
        <source>At least 2 data sources needed, add them first please</source>
        <translation>Es werden mindestens 2 Datenquellen gebraucht, bitte zuerst hinzufügen</translation>
    </message>
    <message>
        <source>You can&apos;t change data source after a job is runned, Stop the job first please.</source>
        <translation>Die Datenquelle eines gelaufenen Auftrags kann nicht geändert werden, bitte den Auftrag zuerst stoppen.</translation>
    </message>
    <message>
        <source>Some job is running or has records to synchronize, stop them first</source>
        <translation>Ein Auftrag läuft noch oder hat Änderungen zu übertragen, bitte zuerst stoppen</translation>
    </message>
    <message>
        <source>Please select at least one item to operate</source>
        <translation>Bitte mindestens einen Eintrag auswählen</translation>
    </message>
    <message>
        <source>Database is used in a running job</source>
        <translation>Die Datenbank wird von einem laufenden Auftrag benutzt</translation>
    </message>
    <message>
        <source>Can only select one item to change.</source>
        <translation>Zum Ändern darf nur ein Eintrag ausgewählt sein.</translation>
    </message>
    <message>
        <source>Database is using in running job, delete later</source>
        <translation>Die Datenbank wird von einem laufenden Auftrag benutzt, bitte später löschen</translation>
    </message>
    <message>
        <source>A password must not contain a zero byte</source>
        <translation>Ein Passwort darf kein Null-Byte enthalten</translation>
    </message>
    <message>
        <source>Say why the statement is skipped</source>
        <translation>Bitte angeben, warum die Anweisung übersprungen wird</translation>
    </message>
    <message>
        <source>The destination has a row with this key already: somebody else writes to the table, or it was not alike when the job was started. Compare the row on both sides; delete it on the destination and try again, or skip the statement.</source>
        <translation>Am Ziel gibt es schon eine Zeile mit diesem Schlüssel: Jemand anders schreibt in die Tabelle, oder sie war beim Start des Auftrags nicht gleich. Die Zeile auf beiden Seiten vergleichen; sie am Ziel löschen und es erneut versuchen, oder die Anweisung überspringen.</translation>
    </message>
    <message>
        <source>The session was ended by an administrator. Try again.</source>
        <translation>Die Sitzung wurde von einem Administrator beendet. Erneut versuchen.</translation>
    </message>
    <message>
        <source>The table is locked by another session of the destination. End that session, or try again when it has committed.</source>
        <translation>Die Tabelle ist von einer anderen Sitzung am Ziel gesperrt. Diese Sitzung beenden oder es nach ihrem Commit erneut versuchen.</translation>
    </message>
    <message>
        <source>The statement waited for a session that waited for it. Try again.</source>
        <translation>Die Anweisung wartete auf eine Sitzung, die auf sie wartete. Erneut versuchen.</translation>
    </message>
    <message>
        <source>The server can not archive its redo any more. Its administrator makes room in the recovery area; then it goes on by itself.</source>
        <translation>Der Server kann sein Redo nicht mehr archivieren. Sein Administrator schafft Platz in der Recovery Area; dann geht es von selbst weiter.</translation>
    </message>
    <message>
        <source>A column is missing on the destination: the table was changed on the source. Add the column there and try again.</source>
        <translation>Am Ziel fehlt eine Spalte: Die Tabelle wurde an der Quelle geändert. Die Spalte dort hinzufügen und es erneut versuchen.</translation>
    </message>
    <message>
        <source>The tables have other columns on the two sides. Make them alike and try again.</source>
        <translation>Die Tabellen haben auf beiden Seiten andere Spalten. Sie angleichen und es erneut versuchen.</translation>
    </message>
    <message>
        <source>The table is missing on the destination, or the user may not see it. Create it (migrate), grant the right, or exclude the table.</source>
        <translation>Die Tabelle fehlt am Ziel, oder der Benutzer darf sie nicht sehen. Sie anlegen (migrieren), das Recht vergeben oder die Tabelle ausschließen.</translation>
    </message>
    <message>
        <source>User or password is wrong. Give the data source the right ones.</source>
        <translation>Benutzer oder Passwort ist falsch. Der Datenquelle die richtigen geben.</translation>
    </message>
    <message>
        <source>The user lacks a right. Grant it on the destination, or on the source when the redo could not be read, and try again.</source>
        <translation>Dem Benutzer fehlt ein Recht. Es am Ziel vergeben, oder an der Quelle, wenn das Redo nicht gelesen werden konnte, und es erneut versuchen.</translation>
    </message>
    <message>
        <source>A redo log that the job needs is not there any more. Bring the archived logs back and try again; else compare the tables, stop the job and start it anew.</source>
        <translation>Ein Redo-Log, das der Auftrag braucht, ist nicht mehr vorhanden. Die archivierten Logs zurückholen und es erneut versuchen; sonst die Tabellen vergleichen, den Auftrag stoppen und neu starten.</translation>
    </message>
    <message>
        <source>A column of the destination does not take an empty value and the source&apos;s does. Make the columns alike and try again.</source>
        <translation>Eine Spalte am Ziel nimmt keinen leeren Wert an, die an der Quelle schon. Die Spalten angleichen und es erneut versuchen.</translation>
    </message>
    <message>
        <source>A number does not fit its column on the destination. Make the column wider and try again.</source>
        <translation>Eine Zahl passt nicht in ihre Spalte am Ziel. Die Spalte breiter machen und es erneut versuchen.</translation>
    </message>
    <message>
        <source>The quota of the owner on the destination is used up. Raise it and try again.</source>
        <translation>Die Quota des Besitzers am Ziel ist erschöpft. Sie erhöhen und es erneut versuchen.</translation>
    </message>
    <message>
        <source>The tablespace of the destination is full. Add room and try again.</source>
        <translation>Der Tablespace am Ziel ist voll. Platz schaffen und es erneut versuchen.</translation>
    </message>
    <message>
        <source>The owner has no quota on the tablespace of the destination. Grant one and try again.</source>
        <translation>Der Besitzer hat keine Quota auf dem Tablespace am Ziel. Eine vergeben und es erneut versuchen.</translation>
    </message>
    <message>
        <source>A check constraint of the destination forbids the row. Make the constraints alike on both sides and try again, or skip the statement.</source>
        <translation>Ein Check-Constraint am Ziel verbietet die Zeile. Die Constraints auf beiden Seiten angleichen und es erneut versuchen, oder die Anweisung überspringen.</translation>
    </message>
    <message>
        <source>The row that this one refers to is missing on the destination: its table is not carried, or the order of the changes was lost. Bring the row and try again, or switch the foreign key off there.</source>
        <translation>Die Zeile, auf die diese verweist, fehlt am Ziel: Ihre Tabelle wird nicht übertragen, oder die Reihenfolge der Änderungen ging verloren. Die Zeile hinbringen und es erneut versuchen, oder den Fremdschlüssel dort abschalten.</translation>
    </message>
    <message>
        <source>Rows of the destination still refer to this one. Delete them or switch the foreign key off there, and try again.</source>
        <translation>Zeilen am Ziel verweisen noch auf diese. Sie löschen oder den Fremdschlüssel dort abschalten und es erneut versuchen.</translation>
    </message>
    <message>
        <source>The connection broke. It is tried again by itself; when it goes on, ask the server&apos;s administrator.</source>
        <translation>Die Verbindung brach ab. Es wird von selbst erneut versucht; wenn es so bleibt, den Administrator des Servers fragen.</translation>
    </message>
    <message>
        <source>The connect name is not known here. Look at tnsnames.ora and at the name of the data source.</source>
        <translation>Der Verbindungsname ist hier nicht bekannt. tnsnames.ora und den Namen der Datenquelle prüfen.</translation>
    </message>
    <message>
        <source>The listener does not know the database: it is down, or the connect name leads to the wrong service.</source>
        <translation>Der Listener kennt die Datenbank nicht: Sie ist nicht gestartet, oder der Verbindungsname führt zum falschen Dienst.</translation>
    </message>
    <message>
        <source>Nobody listens there: the server or its listener is down, or the connect name leads to the wrong place.</source>
        <translation>Dort hört niemand: Der Server oder sein Listener läuft nicht, oder der Verbindungsname führt an die falsche Stelle.</translation>
    </message>
    <message>
        <source>A text does not fit its column on the destination. Make the column wider and try again.</source>
        <translation>Ein Text passt nicht in seine Spalte am Ziel. Die Spalte breiter machen und es erneut versuchen.</translation>
    </message>
    <message>
        <source>The source could not be read. It is tried again at each pass; what is to be mended is there.</source>
        <translation>Die Quelle konnte nicht gelesen werden. Bei jedem Durchgang wird es erneut versucht; die Ursache liegt dort.</translation>
    </message>
    <message>
        <source>The destination could not be written to. It is tried again at each pass; what is to be mended is there.</source>
        <translation>Ins Ziel konnte nicht geschrieben werden. Bei jedem Durchgang wird es erneut versucht; die Ursache liegt dort.</translation>
    </message>
    <message>
        <source>A file of the working folder could not be written. Make room, or look at its rights.</source>
        <translation>Eine Datei im Arbeitsordner konnte nicht geschrieben werden. Platz schaffen oder ihre Rechte prüfen.</translation>
    </message>
    <message>
        <source>Mend the cause on the destination and try again, skip the statement, or exclude the table.</source>
        <translation>Die Ursache am Ziel beheben und es erneut versuchen, die Anweisung überspringen oder die Tabelle ausschließen.</translation>
    </message>
    <message>
        <source>A name must not be empty</source>
        <translation>Ein Name darf nicht leer sein</translation>
    </message>
    <message>
        <source>A name must not be longer than %1 bytes</source>
        <translation>Ein Name darf nicht länger als %1 Byte sein</translation>
    </message>
    <message>
        <source>A name must not begin with a blank</source>
        <translation>Ein Name darf nicht mit einem Leerzeichen beginnen</translation>
    </message>
    <message>
        <source>A name must not end with a blank</source>
        <translation>Ein Name darf nicht mit einem Leerzeichen enden</translation>
    </message>
    <message>
        <source>A name must not end with a dot</source>
        <translation>Ein Name darf nicht mit einem Punkt enden</translation>
    </message>
    <message>
        <source>A name must not contain control characters</source>
        <translation>Ein Name darf keine Steuerzeichen enthalten</translation>
    </message>
    <message>
        <source>A name must not contain &apos;%1&apos;</source>
        <translation>Ein Name darf kein „%1“ enthalten</translation>
    </message>
    <message>
        <source>A name must not be that of a device, like NUL or COM1</source>
        <translation>Ein Name darf nicht der eines Geräts sein, wie NUL oder COM1</translation>
    </message>
    <message>
        <source>A job&apos;s name must not begin with %1</source>
        <translation>Der Name eines Auftrags darf nicht mit %1 beginnen</translation>
    </message>
    <message>
        <source>There is a job %1 already</source>
        <translation>Es gibt schon einen Auftrag %1</translation>
    </message>
    <message>
        <source>There is a data source %1 already</source>
        <translation>Es gibt schon eine Datenquelle %1</translation>
    </message>
    <message>
        <source>There is a data source %1 already, whose file can not be read</source>
        <translation>Es gibt schon eine Datenquelle %1, deren Datei nicht gelesen werden kann</translation>
    </message>
    <message>
        <source>The name %1 is taken by a file of the program</source>
        <translation>Der Name %1 gehört einer Datei des Programms</translation>
    </message>
    <message>
        <source>There are %1 data sources already, which is the most that can be registered</source>
        <translation>Es gibt schon %1 Datenquellen; mehr können nicht registriert werden</translation>
    </message>
    <message>
        <source>There is no data source %1</source>
        <translation>Es gibt keine Datenquelle %1</translation>
    </message>
    <message>
        <source>A password must not be longer than %1 bytes</source>
        <translation>Ein Kennwort darf nicht länger als %1 Byte sein</translation>
    </message>
    <message>
        <source>What %1 follows can be changed while it is stopped only</source>
        <translation>Wem %1 folgt, kann nur geändert werden, während er gestoppt ist</translation>
    </message>
    <message>
        <source>The position row of %1 can be changed while it is stopped only</source>
        <translation>Die Positionszeile von %1 kann nur geändert werden, während er gestoppt ist</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is no plain name of an owner: capital letters, digits, _ $ and #</source>
        <translation>„%1“ ist kein einfacher Name eines Eigentümers: Großbuchstaben, Ziffern, _ $ und #</translation>
    </message>
    <message>
        <source>%1 could not be made : %2. Grant the right to create a table there, or name another owner</source>
        <translation>%1 konnte nicht angelegt werden: %2. Das Recht erteilen, dort eine Tabelle anzulegen, oder einen anderen Eigentümer nennen</translation>
    </message>
    <message>
        <source>To %1 a row of %2 was refused : %3. Grant select, insert, update and delete on it</source>
        <translation>%1 einer Zeile von %2 wurde abgelehnt: %3. Darauf select, insert, update und delete erteilen</translation>
    </message>
    <message>
        <source>Can not connect to %1 : %2</source>
        <translation>Keine Verbindung zu %1: %2</translation>
    </message>
    <message>
        <source>Job %1 is not stopped. Stop it first</source>
        <translation>Der Auftrag %1 ist nicht gestoppt. Bitte zuerst stoppen</translation>
    </message>
    <message>
        <source>Job %1 is running. Pause or stop it first</source>
        <translation>Der Auftrag %1 läuft. Bitte zuerst pausieren oder stoppen</translation>
    </message>
    <message>
        <source>connect Database failed. Error: %1</source>
        <translation>Die Verbindung zur Datenbank ist gescheitert. Fehler: %1</translation>
    </message>
    <message>
        <source>Database already exist, user another please</source>
        <translation>Diese Datenbank gibt es schon, bitte eine andere nehmen</translation>
    </message>
    <message>
        <source>Not get table list yet, refresh first please.</source>
        <translation>Die Tabellenliste fehlt noch, bitte zuerst auffrischen.</translation>
    </message>
    <message>
        <source>A statement can be skipped while the job is paused. %1 is not</source>
        <translation>Eine Anweisung kann übersprungen werden, während der Auftrag pausiert ist. %1 ist es nicht</translation>
    </message>
    <message>
        <source>%1 is held: %2</source>
        <translation>%1 ist gesperrt: %2</translation>
    </message>
    <message>
        <source>Whether the destination took the last pass of %1 is not known yet. Let the job run once, then skip</source>
        <translation>Ob das Ziel den letzten Durchgang von %1 angenommen hat, ist noch nicht bekannt. Den Auftrag einmal laufen lassen, dann überspringen</translation>
    </message>
    <message>
        <source>%1 has no statement to skip: its batch is worked off</source>
        <translation>%1 hat keine Anweisung zum Überspringen: sein Stapel ist abgearbeitet</translation>
    </message>
    <message>
        <source>%1 is neither started nor paused: there is nothing to try again</source>
        <translation>%1 ist weder gestartet noch pausiert: es gibt nichts, was neu versucht werden könnte</translation>
    </message>
    <message>
        <source>%1 got further meanwhile: nothing was skipped</source>
        <translation>%1 ist inzwischen weitergekommen: nichts wurde übersprungen</translation>
    </message>
    <message>
        <source>The sandbox database %1 could not be made: %2</source>
        <translation>Die Sandbox-Datenbank %1 konnte nicht angelegt werden: %2</translation>
    </message>
    <message>
        <source>The sandbox library is not installed: it comes with the package quillmere-sandbox</source>
        <translation>Die Sandbox-Bibliothek ist nicht installiert: sie kommt mit dem Paket quillmere-sandbox</translation>
    </message>
    <message>
        <source>This folder has data sources of another client library: take a new working folder to try the sandbox</source>
        <translation>Dieser Ordner hat Datenquellen einer anderen Client-Bibliothek: für einen Versuch mit der Sandbox einen neuen Arbeitsordner nehmen</translation>
    </message>
    <message>
        <source>%1 is not registered any more</source>
        <translation>%1 ist nicht mehr registriert</translation>
    </message>
    <message>
        <source>connect to %1 successed</source>
        <translation>Die Verbindung zu %1 gelang</translation>
    </message>
    <message>
        <source>%1 was stopped meanwhile: nothing else was done</source>
        <translation>%1 wurde inzwischen gestoppt: sonst ist nichts geschehen</translation>
    </message>
    <message>
        <source>Drop Primary key %1 successed</source>
        <translation>Primärschlüssel %1 gelöscht</translation>
    </message>
    <message>
        <source>Drop Index %1 successed</source>
        <translation>Index %1 gelöscht</translation>
    </message>
    <message>
        <source>Drop Table %1 successed</source>
        <translation>Tabelle %1 gelöscht</translation>
    </message>
    <message>
        <source>Drop Primary key %1 failed. Reason: %2</source>
        <translation>Primärschlüssel %1 wurde nicht gelöscht. Grund: %2</translation>
    </message>
    <message>
        <source>Drop Index %1 failed. Reason: %2</source>
        <translation>Index %1 wurde nicht gelöscht. Grund: %2</translation>
    </message>
    <message>
        <source>Drop Table %1 failed, reason: %2</source>
        <translation>Tabelle %1 wurde nicht gelöscht, Grund: %2</translation>
    </message>
    <message>
        <source>Migarte Primary key %1 successed</source>
        <translation>Primärschlüssel %1 übertragen</translation>
    </message>
    <message>
        <source>Migarte Index %1 successed</source>
        <translation>Index %1 übertragen</translation>
    </message>
    <message>
        <source>Migarte Table %1 successed</source>
        <translation>Tabelle %1 übertragen</translation>
    </message>
    <message>
        <source>Migarte Primary key %1 failed. Reason: %2</source>
        <translation>Primärschlüssel %1 wurde nicht übertragen. Grund: %2</translation>
    </message>
    <message>
        <source>Migarte Index %1 failed. Reason: %2</source>
        <translation>Index %1 wurde nicht übertragen. Grund: %2</translation>
    </message>
    <message>
        <source>Migarte Table %1 failed. Reason: %2</source>
        <translation>Tabelle %1 wurde nicht übertragen. Grund: %2</translation>
    </message>
    <message>
        <source>change Pk name of %1 failed. Reason: %2</source>
        <translation>Der Primärschlüssel %1 wurde nicht umbenannt. Grund: %2</translation>
    </message>
    <message>
        <source>change index name of %1 failed. Reason: %2</source>
        <translation>Der Index %1 wurde nicht umbenannt. Grund: %2</translation>
    </message>
    <message>
        <source>change table name of %1 failed. Reason: %2</source>
        <translation>Die Tabelle %1 wurde nicht umbenannt. Grund: %2</translation>
    </message>
    <message>
        <source>Key: %1&apos;s name changed to %2</source>
        <translation>Der Schlüssel %1 heißt jetzt %2</translation>
    </message>
    <message>
        <source>index: %1&apos;s name changed to %2</source>
        <translation>Der Index %1 heißt jetzt %2</translation>
    </message>
    <message>
        <source>table: %1&apos;s name changed to %2</source>
        <translation>Die Tabelle %1 heißt jetzt %2</translation>
    </message>
    <message>
        <source>The next pass of %1 has nothing to execute</source>
        <translation>Der nächste Durchgang von %1 hat nichts auszuführen</translation>
    </message>
    <message>
        <source>The next pass of %1 has nothing to execute yet: what has changed since the last one comes with the pass after it</source>
        <translation>Der nächste Durchgang von %1 hat noch nichts auszuführen: Was sich seit dem letzten geändert hat, kommt mit dem danach</translation>
    </message>
    <message>
        <source>%1 is stopped: it takes what changes on the source from its start on</source>
        <translation>%1 ist gestoppt: Er nimmt, was sich ab seinem Start an der Quelle ändert</translation>
    </message>
    <message>
        <source>Connect source fail : %1</source>
        <translation>Keine Verbindung zur Quelle: %1</translation>
    </message>
    <message>
        <source>The source has not written its redo yet</source>
        <translation>Die Quelle hat ihr Redo noch nicht geschrieben</translation>
    </message>
    <message>
        <source>Only the first %1 changes are shown: there are more</source>
        <translation>Nur die ersten %1 Änderungen sind gezeigt: Es gibt mehr</translation>
    </message>
    <message>
        <source>Whether the destination took the last pass is not known yet: the next one asks it first, and may begin further on</source>
        <translation>Ob das Ziel den letzten Durchgang angenommen hat, ist noch nicht bekannt: Der nächste fragt es zuerst und beginnt vielleicht weiter hinten</translation>
    </message>
    <message>
        <source>the job excludes the table</source>
        <translation>Der Auftrag schließt die Tabelle aus</translation>
    </message>
    <message>
        <source>it names no table</source>
        <translation>Sie nennt keine Tabelle</translation>
    </message>
    <message>
        <source>the job does not carry its owner</source>
        <translation>Der Auftrag überträgt ihren Besitzer nicht</translation>
    </message>
    <message>
        <source>it was set aside when it was mined; see setaside.sql</source>
        <translation>Sie wurde beim Lesen beiseitegelegt, siehe setaside.sql</translation>
    </message>
    <message>
        <source>it is to be skipped</source>
        <translation>Sie soll übersprungen werden</translation>
    </message>
    <message>
        <source>Made the sandbox databases %1 and %2 with 3 tables each in %3, and the job %4 that copies the first to the second. Select it and press Run</source>
        <translation>Die Sandbox-Datenbanken %1 und %2 mit je 3 Tabellen in %3 sind angelegt, und der Auftrag %4, der die erste in die zweite kopiert. Ihn auswählen und „Start“ drücken</translation>
    </message>
    <message>
        <source>The sandbox library can not be loaded</source>
        <translation>Die Sandbox-Bibliothek ist nicht zu laden</translation>
    </message>
    <message>
        <source>Can not open %1: %2</source>
        <translation>%1 ist nicht zu öffnen: %2</translation>
    </message>
    <message>
        <source>Can not read %1: %2</source>
        <translation>%1 ist nicht zu lesen: %2</translation>
    </message>
    <message>
        <source>Can not create %1: %2</source>
        <translation>%1 ist nicht anzulegen: %2</translation>
    </message>
    <message>
        <source>Can not write %1: %2</source>
        <translation>%1 ist nicht zu schreiben: %2</translation>
    </message>
    <message>
        <source>Can not remove %1: %2</source>
        <translation>%1 ist nicht zu entfernen: %2</translation>
    </message>
    <message>
        <source>Can not rename %1 to %2: %3</source>
        <translation>%1 ist nicht in %2 umzubenennen: %3</translation>
    </message>
    <message>
        <source>Can not create folder %1: %2</source>
        <translation>Der Ordner %1 ist nicht anzulegen: %2</translation>
    </message>
    <message>
        <source>Can not keep a copy of %1: %2</source>
        <translation>Von %1 ist keine Kopie aufzuheben: %2</translation>
    </message>
    <message>
        <source>connect to %1</source>
        <translation>Anmelden an %1</translation>
    </message>
    <message>
        <source>migrate %1</source>
        <translation>%1 wird migriert</translation>
    </message>
    <message>
        <source>migrate %1: %2 rows read</source>
        <translation>%1 wird migriert: Zeilen gelesen: %2</translation>
    </message>
    <message>
        <source>drop %1</source>
        <translation>%1 wird gelöscht</translation>
    </message>
    <message>
        <source>drop %1: %2 rows read</source>
        <translation>%1 wird gelöscht: Zeilen gelesen: %2</translation>
    </message>
    <message>
        <source>rename %1</source>
        <translation>%1 wird umbenannt</translation>
    </message>
    <message>
        <source>rename %1: %2 rows read</source>
        <translation>%1 wird umbenannt: Zeilen gelesen: %2</translation>
    </message>
    <message>
        <source>read the list of tables</source>
        <translation>Die Tabellenliste wird gelesen</translation>
    </message>
    <message>
        <source>read the list of tables: %1 so far</source>
        <translation>Die Tabellenliste wird gelesen: %1 bis jetzt</translation>
    </message>
    <message>
        <source>read table %1</source>
        <translation>Tabelle %1 wird gelesen</translation>
    </message>
    <message>
        <source>read the owners of %1</source>
        <translation>Die Besitzer von %1 werden gelesen</translation>
    </message>
    <message>
        <source>read the tables of %1</source>
        <translation>Die Tabellen von %1 werden gelesen</translation>
    </message>
    <message>
        <source>owners of %1: %2 rows read</source>
        <translation>Besitzer von %1: Zeilen gelesen: %2</translation>
    </message>
    <message>
        <source>tables of %1: %2 rows read</source>
        <translation>Tabellen von %1: Zeilen gelesen: %2</translation>
    </message>
    <message>
        <source>enter container %1</source>
        <translation>Container %1 wird betreten</translation>
    </message>
    <message>
        <source>make the sandbox database %1</source>
        <translation>Die Sandbox-Datenbank %1 wird angelegt</translation>
    </message>
    <message>
        <source>Can&apos;t not connect to database: %1. Reason: %2</source>
        <translation>Keine Verbindung zur Datenbank %1. Grund: %2</translation>
    </message>
    <message>
        <source>Can&apos;t not get table info list,Reason: %1</source>
        <translation>Die Tabellenliste war nicht zu lesen. Grund: %1</translation>
    </message>
    <message>
        <source>check if has key of  %1 failed. Reason: %2</source>
        <translation>Ob %1 einen Schlüssel hat, war nicht festzustellen. Grund: %2</translation>
    </message>
    <message>
        <source>get key of table %1 failed. Reason: %2</source>
        <translation>Der Schlüssel der Tabelle %1 war nicht zu lesen. Grund: %2</translation>
    </message>
    <message>
        <source>get index of table %1 failed. Reason: %2</source>
        <translation>Die Indizes der Tabelle %1 waren nicht zu lesen. Grund: %2</translation>
    </message>
    <message>
        <source>Can not connect to source, refresh failed. Reason: %1</source>
        <translation>Keine Verbindung zur Quelle, nichts wurde aufgefrischt. Grund: %1</translation>
    </message>
    <message>
        <source>Can not enter container %1 of %2, refresh failed. Reason: %3</source>
        <translation>Der Container %1 von %2 war nicht zu betreten, nichts wurde aufgefrischt. Grund: %3</translation>
    </message>
    <message>
        <source>Can&apos;t get source owner list, refresh failed. Reason: %1</source>
        <translation>Die Besitzer der Quelle waren nicht zu lesen, nichts wurde aufgefrischt. Grund: %1</translation>
    </message>
    <message>
        <source>Can&apos;t get source table info list, refresh failed. Reason: %1</source>
        <translation>Die Tabellen der Quelle waren nicht zu lesen, nichts wurde aufgefrischt. Grund: %1</translation>
    </message>
    <message>
        <source>The target is the source itself: choose another data source to migrate to</source>
        <translation>Das Ziel ist die Quelle selbst: bitte eine andere Datenquelle als Ziel wählen</translation>
    </message>
    <message>
        <source>connect source Database failed. Error: %1</source>
        <translation>Die Verbindung zur Quelldatenbank ist gescheitert. Fehler: %1</translation>
    </message>
    <message>
        <source>connect destination Database failed. Error: %1</source>
        <translation>Die Verbindung zur Zieldatenbank ist gescheitert. Fehler: %1</translation>
    </message>
    <message>
        <source>Table: %1 not exist. Can&apos;t migrate key: %2: %3</source>
        <translation>Ob es die Tabelle %1 gibt, war für den Schlüssel %2 nicht festzustellen: %3</translation>
    </message>
    <message>
        <source>Table: %1 not exist. Can&apos;t migrate index: %2: %3</source>
        <translation>Ob es die Tabelle %1 gibt, war für den Index %2 nicht festzustellen: %3</translation>
    </message>
    <message>
        <source>Check destination table existed failed. Reason:%1</source>
        <translation>Ob es die Zieltabelle gibt, war nicht festzustellen. Grund: %1</translation>
    </message>
    <message>
        <source>Table: %1 already exist. Can&apos;t migrate Table: %2.</source>
        <translation>Bei %1 gibt es die Tabelle %2 schon; sie wurde nicht übertragen.</translation>
    </message>
    <message>
        <source>Can&apos;t not get source table&apos;s columns: %1</source>
        <translation>Die Spalten der Quelltabelle waren nicht zu lesen: %1</translation>
    </message>
    <message>
        <source>Can&apos;t not drop target table: %1</source>
        <translation>Die Zieltabelle war nicht zu löschen: %1</translation>
    </message>
    <message>
        <source>Can&apos;t not check table&apos;s primary key. %1</source>
        <translation>Der Primärschlüssel der Tabelle war nicht zu prüfen. %1</translation>
    </message>
    <message>
        <source>Can&apos;t not get source table&apos;s primary key. %1</source>
        <translation>Der Primärschlüssel der Quelltabelle war nicht zu lesen. %1</translation>
    </message>
    <message>
        <source>Can&apos;t not get primary key&apos;s content: %1</source>
        <translation>Die Spalten des Primärschlüssels waren nicht zu lesen: %1</translation>
    </message>
    <message>
        <source>Can&apos;t not check table&apos;s index: %1</source>
        <translation>Die Indizes der Tabelle waren nicht zu prüfen: %1</translation>
    </message>
    <message>
        <source>Can&apos;t not get table&apos;s index: %1</source>
        <translation>Die Indizes der Tabelle waren nicht zu lesen: %1</translation>
    </message>
    <message>
        <source>Can&apos;t not get source table&apos;s index content: %1</source>
        <translation>Die Spalten eines Index der Quelltabelle waren nicht zu lesen: %1</translation>
    </message>
    <message>
        <source>Create target table:%1 failed: %2</source>
        <translation>Die Zieltabelle %1 war nicht anzulegen: %2</translation>
    </message>
    <message>
        <source>Create target primary key:%1of %2 failed: %3</source>
        <translation>Am Ziel war der Primärschlüssel %1 von %2 nicht anzulegen: %3</translation>
    </message>
    <message>
        <source>Create target index:%1of %2 failed: %3</source>
        <translation>Am Ziel war der Index %1 von %2 nicht anzulegen: %3</translation>
    </message>
    <message>
        <source>%1 is gone from the source</source>
        <translation>%1 ist an der Quelle nicht mehr vorhanden</translation>
    </message>
    <message>
        <source>check fk of %1 failed.</source>
        <translation>Die Fremdschlüssel zu %1 waren nicht zu prüfen.</translation>
    </message>
    <message>
        <source>drop fk of %1 failed.</source>
        <translation>Die Fremdschlüssel zu %1 waren nicht zu löschen.</translation>
    </message>
    <message>
        <source>drop pk: %1 failed.</source>
        <translation>Der Primärschlüssel %1 war nicht zu löschen.</translation>
    </message>
    <message>
        <source>dropped and not created again, to be run by hand: %1</source>
        <translation>gelöscht und nicht wieder angelegt, von Hand auszuführen: %1</translation>
    </message>
    <message>
        <source>Table: %1 not exist. Can&apos;t migrate key: %2</source>
        <translation>Ob es die Tabelle %1 gibt, war für den Schlüssel %2 nicht festzustellen</translation>
    </message>
    <message>
        <source>Table: %1 not exist. Can&apos;t migrate index: %2</source>
        <translation>Ob es die Tabelle %1 gibt, war für den Index %2 nicht festzustellen</translation>
    </message>
    <message>
        <source>Can&apos;t not get source table&apos;s columns</source>
        <translation>Die Spalten der Quelltabelle waren nicht zu lesen</translation>
    </message>
    <message>
        <source>Can&apos;t not drop target table</source>
        <translation>Die Zieltabelle war nicht zu löschen</translation>
    </message>
    <message>
        <source>Can&apos;t not check table&apos;s primary key.</source>
        <translation>Der Primärschlüssel der Tabelle war nicht zu prüfen.</translation>
    </message>
    <message>
        <source>Can&apos;t not get source table&apos;s primary key.</source>
        <translation>Der Primärschlüssel der Quelltabelle war nicht zu lesen.</translation>
    </message>
    <message>
        <source>Can&apos;t not get primary key&apos;s content</source>
        <translation>Die Spalten des Primärschlüssels waren nicht zu lesen</translation>
    </message>
    <message>
        <source>Can&apos;t not check table&apos;s index</source>
        <translation>Die Indizes der Tabelle waren nicht zu prüfen</translation>
    </message>
    <message>
        <source>Can&apos;t not get table&apos;s index</source>
        <translation>Die Indizes der Tabelle waren nicht zu lesen</translation>
    </message>
    <message>
        <source>Can&apos;t not get source table&apos;s index content</source>
        <translation>Die Spalten eines Index der Quelltabelle waren nicht zu lesen</translation>
    </message>
    <message>
        <source>Create target table:%1 failed</source>
        <translation>Die Zieltabelle %1 war nicht anzulegen</translation>
    </message>
    <message>
        <source>Create target primary key:%1of %2 failed</source>
        <translation>Am Ziel war der Primärschlüssel %1 von %2 nicht anzulegen</translation>
    </message>
    <message>
        <source>Create target index:%1of %2 failed</source>
        <translation>Am Ziel war der Index %1 von %2 nicht anzulegen</translation>
    </message>
    <message>
        <source>%1 beginning with %2 left out: a name in it is longer than %3 bytes</source>
        <translation>%1, beginnend mit %2, ausgelassen: Ein Name darin ist länger als %3 Byte</translation>
    </message>
    <message>
        <source>The destination has no row with the change&apos;s values of %1</source>
        <translation>Das Ziel hat keine Zeile mit den Werten der Änderung von %1</translation>
    </message>
    <message>
        <source>The destination has 1 row with the change&apos;s values of %1</source>
        <translation>Das Ziel hat 1 Zeile mit den Werten der Änderung von %1</translation>
    </message>
    <message>
        <source>The destination has %1 rows with the change&apos;s values of %2</source>
        <translation>Das Ziel hat %1 Zeilen mit den Werten der Änderung von %2</translation>
    </message>
    <message>
        <source>No row is to be looked for: the problem is no statement that names one</source>
        <translation>Es ist keine Zeile zu suchen: das Problem ist keine Anweisung, die eine nennt</translation>
    </message>
    <message>
        <source>The destination did not give the row: %1</source>
        <translation>Das Ziel hat die Zeile nicht gegeben: %1</translation>
    </message>
</context>
<context>
    <name>DatabaseActions</name>
    <message>
        <source>OpenDbMgr</source>
        <translation>Datenquellen</translation>
    </message>
    <message>
        <source>ConnectDS</source>
        <translation>Verbinden</translation>
    </message>
    <message>
        <source>DisConnectDS</source>
        <translation>Trennen</translation>
    </message>
    <message>
        <source>RefreshDS</source>
        <translation>Neu lesen</translation>
    </message>
    <message>
        <source>DropMeta</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>ChangeName</source>
        <translation>Umbenennen</translation>
    </message>
    <message>
        <source>MoveMeta</source>
        <translation>Migrieren</translation>
    </message>
    <message>
        <source>BrowseData</source>
        <translation>Daten ansehen</translation>
    </message>
    <message>
        <source>Expand Tree</source>
        <translation>Baum aufklappen</translation>
    </message>
    <message>
        <source>Collapse Tree</source>
        <translation>Baum zuklappen</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>open data source manager</source>
        <translation>Datenquellen verwalten</translation>
    </message>
    <message>
        <source>Open database manager to add/modify/delete a database connection</source>
        <translation>Öffnet die Verwaltung der Datenquellen: hinzufügen, ändern, löschen</translation>
    </message>
    <message>
        <source>connect to a data source </source>
        <translation>mit einer Datenquelle verbinden</translation>
    </message>
    <message>
        <source>Connect to a data source.</source>
        <translation>Mit einer Datenquelle verbinden.</translation>
    </message>
    <message>
        <source>disconnect from a data source</source>
        <translation>von einer Datenquelle trennen</translation>
    </message>
    <message>
        <source>DisConnect from a data source.</source>
        <translation>Von einer Datenquelle trennen.</translation>
    </message>
    <message>
        <source>refresh meta  information of a database</source>
        <translation>Katalog einer Datenbank neu lesen</translation>
    </message>
    <message>
        <source>Refresh contents of a data source, including: table/primary key/index...</source>
        <translation>Liest den Inhalt einer Datenquelle neu: Tabellen, Primärschlüssel, Indizes ...</translation>
    </message>
    <message>
        <source>drop a meta</source>
        <translation>ein Objekt löschen</translation>
    </message>
    <message>
        <source>Drop meata of a data source,can be: table/primary key/index... </source>
        <translation>Löscht Objekte einer Datenquelle: Tabellen, Primärschlüssel, Indizes ...</translation>
    </message>
    <message>
        <source>change meta name </source>
        <translation>ein Objekt umbenennen</translation>
    </message>
    <message>
        <source>change meata name of a data source,can be: table/primary key/index... </source>
        <translation>Benennt ein Objekt einer Datenquelle um: Tabelle, Primärschlüssel, Index ...</translation>
    </message>
    <message>
        <source>migrate  meata  </source>
        <translation>Objekte migrieren</translation>
    </message>
    <message>
        <source>migrate meata from one data source to another. </source>
        <translation>Migriert Objekte von einer Datenquelle zu einer anderen.</translation>
    </message>
</context>
<context>
    <name>DatabaseLists</name>
    <message>
        <source>Data Source</source>
        <translation>Datenquelle</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>UserName</source>
        <translation>Benutzer</translation>
    </message>
    <message>
        <source>Mode</source>
        <translation>Modus</translation>
    </message>
    <message>
        <source>Meta Types</source>
        <translation>Objektarten</translation>
    </message>
    <message>
        <source>PRIMARY KEY</source>
        <translation>PRIMÄRSCHLÜSSEL</translation>
    </message>
    <message>
        <source>INDEX</source>
        <translation>INDEX</translation>
    </message>
    <message>
        <source>TABLE</source>
        <translation>TABELLE</translation>
    </message>
    <message>
        <source>Key Name</source>
        <translation>Schlüssel</translation>
    </message>
    <message>
        <source>Table Owner</source>
        <translation>Besitzer der Tabelle</translation>
    </message>
    <message>
        <source>Table Name</source>
        <translation>Tabelle</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>Index Name</source>
        <translation>Index</translation>
    </message>
    <message>
        <source>Index Type</source>
        <translation>Indexart</translation>
    </message>
    <message>
        <source>Index Owner</source>
        <translation>Besitzer des Index</translation>
    </message>
    <message>
        <source>Table Space</source>
        <translation>Tablespace</translation>
    </message>
    <message>
        <source>Rows</source>
        <translation>Zeilen</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Art</translation>
    </message>
</context>
<context>
    <name>Dates</name>
    <message>
        <source>yyyy-MM-dd HH:mm:ss</source>
        <translation>dd.MM.yyyy HH:mm:ss</translation>
    </message>
</context>
<context>
    <name>DoctorWords</name>
    <message>
        <source>log-on</source>
        <translation>Anmeldung</translation>
    </message>
    <message>
        <source>version</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>container</source>
        <translation>Container</translation>
    </message>
    <message>
        <source>characters and formats</source>
        <translation>Zeichen und Formate</translation>
    </message>
    <message>
        <source>clock</source>
        <translation>Uhr</translation>
    </message>
    <message>
        <source>grants on the source</source>
        <translation>Rechte an der Quelle</translation>
    </message>
    <message>
        <source>LogMiner</source>
        <translation>LogMiner</translation>
    </message>
    <message>
        <source>archiving</source>
        <translation>Archivierung</translation>
    </message>
    <message>
        <source>supplemental logging</source>
        <translation>Supplemental Logging</translation>
    </message>
    <message>
        <source>redo kept</source>
        <translation>Aufbewahrung des Redo</translation>
    </message>
    <message>
        <source>log members</source>
        <translation>Dateien der Logs</translation>
    </message>
    <message>
        <source>grants on the destination</source>
        <translation>Rechte am Ziel</translation>
    </message>
    <message>
        <source>room</source>
        <translation>Platz</translation>
    </message>
    <message>
        <source>tables on both sides</source>
        <translation>Tabellen auf beiden Seiten</translation>
    </message>
    <message>
        <source>keys</source>
        <translation>Schlüssel</translation>
    </message>
    <message>
        <source>columns</source>
        <translation>Spalten</translation>
    </message>
    <message>
        <source>types</source>
        <translation>Typen</translation>
    </message>
    <message>
        <source>names</source>
        <translation>Namen</translation>
    </message>
    <message>
        <source>triggers and cascades</source>
        <translation>Trigger und Kaskaden</translation>
    </message>
    <message>
        <source>other jobs</source>
        <translation>Andere Aufträge</translation>
    </message>
    <message>
        <source>rows</source>
        <translation>Zeilen</translation>
    </message>
    <message>
        <source>tablespace %1</source>
        <translation>Tablespace %1</translation>
    </message>
    <message>
        <source>could not be checked: %1</source>
        <translation>Nicht zu prüfen: %1</translation>
    </message>
    <message>
        <source>could not be checked: not logged on</source>
        <translation>Nicht zu prüfen: keine Anmeldung</translation>
    </message>
    <message>
        <source>could not be checked: the version reads &apos;%1&apos;</source>
        <translation>Nicht zu prüfen: Die Version lautet „%1“</translation>
    </message>
    <message>
        <source>could not be checked: its time reads &apos;%1&apos;</source>
        <translation>Nicht zu prüfen: Ihre Zeit lautet „%1“</translation>
    </message>
    <message>
        <source>both databases can be logged on to</source>
        <translation>Die Anmeldung an beiden Datenbanken gelingt</translation>
    </message>
    <message>
        <source>%1 to %2</source>
        <translation>von %1 nach %2</translation>
    </message>
    <message>
        <source>%1 is too old to be followed</source>
        <translation>%1 ist zu alt für eine Quelle</translation>
    </message>
    <message>
        <source>%1 is older than the source, %2: it may not take what the source writes</source>
        <translation>%1 ist älter als die Quelle, %2: Womöglich nimmt das Ziel nicht alles an, was die Quelle schreibt</translation>
    </message>
    <message>
        <source>leads to the root, not to one of its containers</source>
        <translation>führt zur Wurzel, nicht zu einem ihrer Container</translation>
    </message>
    <message>
        <source>is the root, which shows the changes of all containers</source>
        <translation>ist die Wurzel, die die Änderungen aller Container zeigt</translation>
    </message>
    <message>
        <source>leads to %1, the job follows %2</source>
        <translation>führt zu %1, der Auftrag folgt %2</translation>
    </message>
    <message>
        <source>leads to none, the job follows %1</source>
        <translation>führt zu keinem Container, der Auftrag folgt %1</translation>
    </message>
    <message>
        <source>has no container %1</source>
        <translation>hat keinen Container %1</translation>
    </message>
    <message>
        <source>the source leads to: %1</source>
        <translation>Die Quelle führt zu: %1</translation>
    </message>
    <message>
        <source>the source leads to: none</source>
        <translation>Die Quelle führt zu keinem Container</translation>
    </message>
    <message>
        <source>has characters of %1, the source those of %2: what it does not know is lost</source>
        <translation>hat den Zeichensatz %1, die Quelle %2: Was das Ziel nicht kennt, geht verloren</translation>
    </message>
    <message>
        <source>reads dates or numbers in other formats than the source writes</source>
        <translation>liest Datumsangaben oder Zahlen in anderen Formaten, als die Quelle sie schreibt</translation>
    </message>
    <message>
        <source>writes dates as %1, without the time of day</source>
        <translation>schreibt Datumsangaben als %1, ohne die Uhrzeit</translation>
    </message>
    <message>
        <source>%1 to %2, dates and numbers alike</source>
        <translation>von %1 nach %2, Datumsangaben und Zahlen gleich</translation>
    </message>
    <message>
        <source>its clock and ours are %1 s apart</source>
        <translation>Ihre Uhr und unsere gehen %1 s auseinander</translation>
    </message>
    <message>
        <source>both clocks agree with ours</source>
        <translation>Beide Uhren stimmen mit unserer überein</translation>
    </message>
    <message>
        <source>every query of the program is answered</source>
        <translation>Jede Abfrage des Programms wird beantwortet</translation>
    </message>
    <message>
        <source>no current log can be read</source>
        <translation>Das aktuelle Log ist nicht zu lesen</translation>
    </message>
    <message>
        <source>starts and ends on %1</source>
        <translation>lässt sich mit %1 starten und beenden</translation>
    </message>
    <message>
        <source>redo that is overwritten is lost: nothing is archived</source>
        <translation>Überschriebenes Redo ist verloren: Nichts wird archiviert</translation>
    </message>
    <message>
        <source>%1; by rows only online logs are read</source>
        <translation>%1; nach Zeilen werden nur Online-Logs gelesen</translation>
    </message>
    <message>
        <source>without the minimal kind LogMiner can not be relied on</source>
        <translation>Ohne die minimale Art ist auf LogMiner kein Verlass</translation>
    </message>
    <message>
        <source>for the whole database: all columns</source>
        <translation>für die ganze Datenbank: alle Spalten</translation>
    </message>
    <message>
        <source>for the whole database: keys</source>
        <translation>für die ganze Datenbank: Schlüssel</translation>
    </message>
    <message>
        <source>its updates may not tell their row</source>
        <translation>Ihre Änderungen nennen womöglich ihre Zeile nicht</translation>
    </message>
    <message>
        <source>for each table of the job</source>
        <translation>für jede Tabelle des Auftrags</translation>
    </message>
    <message>
        <source>redo is kept for %1 minutes, two intervals are %2 minutes</source>
        <translation>Redo bleibt %1 min erhalten, zwei Intervalle sind %2 min</translation>
    </message>
    <message>
        <source>redo is kept for %1 minutes, two intervals are %2 hours</source>
        <translation>Redo bleibt %1 min erhalten, zwei Intervalle sind %2 h</translation>
    </message>
    <message>
        <source>redo is kept for %1 hours, two intervals are %2 hours</source>
        <translation>Redo bleibt %1 h erhalten, zwei Intervalle sind %2 h</translation>
    </message>
    <message>
        <source>a transaction is open since SCN %1, the oldest redo there begins at %2</source>
        <translation>Seit SCN %1 ist eine Transaktion offen, das älteste Redo dort beginnt bei %2</translation>
    </message>
    <message>
        <source>for %1 minutes</source>
        <translation>für %1 min</translation>
    </message>
    <message>
        <source>for %1 hours</source>
        <translation>für %1 h</translation>
    </message>
    <message>
        <source>for %1 minutes, in the first log that was used</source>
        <translation>für %1 min, im ersten Log, das benutzt wurde</translation>
    </message>
    <message>
        <source>for %1 hours, in the first log that was used</source>
        <translation>für %1 h, im ersten Log, das benutzt wurde</translation>
    </message>
    <message>
        <source>group %1: %2 is %3</source>
        <translation>Gruppe %1: %2 ist %3</translation>
    </message>
    <message>
        <source>%1 members, all in use</source>
        <translation>Dateien: %1, alle in Benutzung</translation>
    </message>
    <message>
        <source>%1 may not %2</source>
        <translation>%1 fehlt das Recht zu %2</translation>
    </message>
    <message>
        <source>%1 may write to every table of the job</source>
        <translation>%1 darf in jede Tabelle des Auftrags schreiben</translation>
    </message>
    <message>
        <source>%1 has %2 MB left of its quota on %3</source>
        <translation>%1 hat noch %2 MB seiner Quota auf %3</translation>
    </message>
    <message>
        <source>%1 MB left</source>
        <translation>noch %1 MB</translation>
    </message>
    <message>
        <source>in %1 tablespaces</source>
        <translation>Tablespaces: %1</translation>
    </message>
    <message>
        <source>the job carries no table</source>
        <translation>Der Auftrag überträgt keine Tabelle</translation>
    </message>
    <message>
        <source>its tables were never read</source>
        <translation>Seine Tabellen wurden nie gelesen</translation>
    </message>
    <message>
        <source>is gone from the source</source>
        <translation>ist an der Quelle nicht mehr vorhanden</translation>
    </message>
    <message>
        <source>is not there on the destination</source>
        <translation>ist am Ziel nicht vorhanden</translation>
    </message>
    <message>
        <source>all %1</source>
        <translation>alle vorhanden: %1</translation>
    </message>
    <message>
        <source>has no key or unique index, the source has</source>
        <translation>hat keinen Schlüssel oder eindeutigen Index, die an der Quelle schon</translation>
    </message>
    <message>
        <source>has no key or unique index on either side: equal rows can not be told apart</source>
        <translation>hat auf keiner Seite einen Schlüssel oder eindeutigen Index: Gleiche Zeilen sind nicht zu unterscheiden</translation>
    </message>
    <message>
        <source>every table has a key or a unique index</source>
        <translation>Jede Tabelle hat einen Schlüssel oder eindeutigen Index</translation>
    </message>
    <message>
        <source>has no column %1</source>
        <translation>hat keine Spalte %1</translation>
    </message>
    <message>
        <source>%1 is %2, on the source %3</source>
        <translation>%1 ist %2, an der Quelle %3</translation>
    </message>
    <message>
        <source>%1 is %2, narrower than %3</source>
        <translation>%1 ist %2, schmaler als %3</translation>
    </message>
    <message>
        <source>%1 must have a value, and the source does not have it</source>
        <translation>%1 muss einen Wert haben, und die Quelle hat die Spalte nicht</translation>
    </message>
    <message>
        <source>the destination has room for each</source>
        <translation>Das Ziel hat Platz für jede</translation>
    </message>
    <message>
        <source>%1 is %2, of which LogMiner tells nothing</source>
        <translation>%1 ist %2, wovon LogMiner nichts meldet</translation>
    </message>
    <message>
        <source>%1 is %2: what is changed in parts comes without a statement</source>
        <translation>%1 ist %2: Was in Teilen geändert wird, kommt ohne Anweisung</translation>
    </message>
    <message>
        <source>LogMiner knows each</source>
        <translation>LogMiner kennt jeden</translation>
    </message>
    <message>
        <source>its name is too long: its changes are blocked</source>
        <translation>Ihr Name ist zu lang: Ihre Änderungen werden blockiert</translation>
    </message>
    <message>
        <source>needs quotes, and a job that follows rows writes names without them</source>
        <translation>braucht Anführungszeichen, und ein Auftrag, der Zeilen folgt, schreibt Namen ohne sie</translation>
    </message>
    <message>
        <source>plain, or kept in their quotes</source>
        <translation>einfach, oder sie behalten ihre Anführungszeichen</translation>
    </message>
    <message>
        <source>the trigger %1 acts again on what is applied</source>
        <translation>Der Trigger %1 wirkt noch einmal auf das Übertragene</translation>
    </message>
    <message>
        <source>%1 deletes or changes rows by itself (%2)</source>
        <translation>%1 löscht oder ändert Zeilen von selbst (%2)</translation>
    </message>
    <message>
        <source>none acts on what is applied</source>
        <translation>Nichts wirkt auf das Übertragene</translation>
    </message>
    <message>
        <source>the job %1 takes its changes back to the source</source>
        <translation>Der Auftrag %1 bringt ihre Änderungen zurück an die Quelle</translation>
    </message>
    <message>
        <source>the job %1 writes to it, too</source>
        <translation>Der Auftrag %1 schreibt auch in sie</translation>
    </message>
    <message>
        <source>none writes to the same tables</source>
        <translation>Keiner schreibt in dieselben Tabellen</translation>
    </message>
    <message>
        <source>%1 rows, on the source %2: of a job that runs, or while people work, they differ for moments</source>
        <translation>Zeilen: %1, an der Quelle %2: Bei einem laufenden Auftrag, oder während gearbeitet wird, unterscheiden sie sich zeitweise</translation>
    </message>
    <message>
        <source>the same number on both sides, in %1 tables</source>
        <translation>gleich viele auf beiden Seiten, Tabellen: %1</translation>
    </message>
    <message>
        <source>-- take NLS_DATE_FORMAT and the like out of log-on triggers, on both sides</source>
        <translation>-- NLS_DATE_FORMAT und dergleichen auf beiden Seiten aus den Logon-Triggern nehmen</translation>
    </message>
    <message>
        <source>-- unset NLS_DATE_FORMAT where the program is started</source>
        <translation>-- NLS_DATE_FORMAT dort löschen, wo das Programm gestartet wird</translation>
    </message>
    <message>
        <source>-- let both machines take their time from the same servers</source>
        <translation>-- Beide Rechner ihre Zeit von denselben Servern holen lassen</translation>
    </message>
    <message>
        <source>-- x$ktuxe is for SYS alone: quillmere-cli source edit %1 --user SYS --mode SYSDBA, or follow commits</source>
        <translation>-- x$ktuxe gehört SYS allein: quillmere-cli source edit %1 --user SYS --mode SYSDBA, oder Commits folgen</translation>
    </message>
    <message>
        <source>-- before 19c only the root can be mined: quillmere-cli job edit %1 --container ..., with a data source at the root</source>
        <translation>-- Vor 19c ist nur die Wurzel zu lesen: quillmere-cli job edit %1 --container ..., mit einer Datenquelle an der Wurzel</translation>
    </message>
    <message>
        <source>alter database add logfile size 1G;
-- until the oldest online log is older than two intervals</source>
        <translation>alter database add logfile size 1G;
-- bis das älteste Online-Log älter ist als zwei Intervalle</translation>
    </message>
    <message>
        <source>-- bring the archived logs back, or end the transaction before the job starts</source>
        <translation>-- Die archivierten Logs zurückholen, oder die Transaktion vor dem Start des Auftrags beenden</translation>
    </message>
    <message>
        <source>-- quillmere-cli job exclude, in one of the two</source>
        <translation>-- quillmere-cli job exclude, in einem der beiden</translation>
    </message>
</context>
<context>
    <name>Farewell</name>
    <message>
        <source>Ending: waiting for the exchange in hand</source>
        <translation>Ende: wartet auf den laufenden Austausch</translation>
    </message>
    <message>
        <source>Ending: waiting for the databases of %1</source>
        <translation>Ende: wartet auf die Datenbanken von %1</translation>
    </message>
    <message>
        <source>Ending: waiting for a connection that was left</source>
        <translation>Ende: wartet auf eine verlassene Verbindung</translation>
    </message>
</context>
<context>
    <name>HealthTexts</name>
    <message numerus="yes">
        <source>%Ln job(s)</source>
        <translation>
            <numerusform>%Ln Auftrag</numerusform>
            <numerusform>%Ln Aufträge</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 %2</source>
        <comment>a number of jobs, how they are</comment>
        <translation>%1 %2</translation>
    </message>
    <message>
        <source>Held: %1</source>
        <translation>Gesperrt: %1</translation>
    </message>
</context>
<context>
    <name>HistoryCharts</name>
    <message>
        <source>Applied per second</source>
        <translation>Angewendet je Sekunde</translation>
    </message>
    <message>
        <source>Waiting</source>
        <translation>Wartend</translation>
    </message>
    <message>
        <source>Behind</source>
        <translation>Rückstand</translation>
    </message>
    <message>
        <source>Passes, failed ones hatched</source>
        <translation>Durchgänge, gescheiterte schraffiert</translation>
    </message>
</context>
<context>
    <name>JobActionList</name>
    <message>
        <source>&amp;New</source>
        <translation>&amp;Neu</translation>
    </message>
    <message>
        <source>&amp;Open</source>
        <translation>Ö&amp;ffnen</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <source>&amp;Run</source>
        <translation>&amp;Start</translation>
    </message>
    <message>
        <source>&amp;Pause</source>
        <translation>&amp;Pause</translation>
    </message>
    <message>
        <source>&amp;Stop</source>
        <translation>S&amp;topp</translation>
    </message>
    <message>
        <source>ChangeRemoteOwner</source>
        <translation>Zielbesitzer ändern</translation>
    </message>
    <message>
        <source>Include</source>
        <translation>Einbeziehen</translation>
    </message>
    <message>
        <source>Exclude</source>
        <translation>Ausschließen</translation>
    </message>
    <message>
        <source>Compared</source>
        <translation>Verglichen</translation>
    </message>
    <message>
        <source>Migrate</source>
        <translation>Migrieren</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>Neu lesen</translation>
    </message>
    <message>
        <source>expand</source>
        <translation>aufklappen</translation>
    </message>
    <message>
        <source>collapse</source>
        <translation>zuklappen</translation>
    </message>
    <message>
        <source>ChangeOwner</source>
        <translation>Besitzer</translation>
    </message>
    <message>
        <source>create a job</source>
        <translation>einen Auftrag anlegen</translation>
    </message>
    <message>
        <source>Add a job to synchronize source database&apos;s record to destination database.</source>
        <translation>Legt einen Auftrag an, der Änderungen der Quelldatenbank in die Zieldatenbank überträgt.</translation>
    </message>
    <message>
        <source>update job info</source>
        <translation>den Auftrag bearbeiten</translation>
    </message>
    <message>
        <source>Change the configuration of a job.</source>
        <translation>Ändert die Konfiguration eines Auftrags.</translation>
    </message>
    <message>
        <source>refresh table list of source database</source>
        <translation>Tabellenliste der Quelldatenbank neu lesen</translation>
    </message>
    <message>
        <source>Refresh all shema tables from source.</source>
        <translation>Liest die Tabellen aller Besitzer der Quelle neu.</translation>
    </message>
    <message>
        <source>delete a job</source>
        <translation>einen Auftrag löschen</translation>
    </message>
    <message>
        <source>Drop a job configuration, nothing is left.</source>
        <translation>Löscht die Konfiguration eines Auftrags, nichts bleibt übrig.</translation>
    </message>
    <message>
        <source>run a job</source>
        <translation>einen Auftrag starten</translation>
    </message>
    <message>
        <source>Start a job to begin synchronize.</source>
        <translation>Startet einen Auftrag, die Übertragung beginnt.</translation>
    </message>
    <message>
        <source>stop a job</source>
        <translation>einen Auftrag pausieren</translation>
    </message>
    <message>
        <source>Stop a job,then you can change the configuration without losing any data.</source>
        <translation>Hält einen Auftrag an; die Konfiguration kann geändert werden, ohne dass Daten verloren gehen.</translation>
    </message>
    <message>
        <source>reset  a job</source>
        <translation>einen Auftrag zurücksetzen</translation>
    </message>
    <message>
        <source>Reset a job, all status is cleared, but configuration is not changed.</source>
        <translation>Setzt einen Auftrag zurück: sein Stand wird gelöscht, die Konfiguration bleibt.</translation>
    </message>
    <message>
        <source>include  owner and table</source>
        <translation>Besitzer und Tabellen einbeziehen</translation>
    </message>
    <message>
        <source>Choose the owner&apos;s tables which you want to synchronized.</source>
        <translation>Tabellen des Besitzers wählen, die übertragen werden sollen.</translation>
    </message>
    <message>
        <source>exclue owner and table</source>
        <translation>Besitzer und Tabellen ausschließen</translation>
    </message>
    <message>
        <source>Choose the owner&apos;s tables which you not want to synchronized.</source>
        <translation>Tabellen des Besitzers wählen, die nicht übertragen werden sollen.</translation>
    </message>
    <message>
        <source>change table owner on remote </source>
        <translation>Besitzer der Tabellen am Ziel ändern</translation>
    </message>
    <message>
        <source>Choose the tables which will be renamed after synchronized.</source>
        <translation>Tabellen wählen, die am Ziel einen anderen Besitzer haben.</translation>
    </message>
    <message>
        <source>migrate a table</source>
        <translation>eine Tabelle migrieren</translation>
    </message>
    <message>
        <source>Directly Migrate a table&apos;s data to destination .</source>
        <translation>Überträgt die Daten einer Tabelle unmittelbar ans Ziel.</translation>
    </message>
</context>
<context>
    <name>JobQuestions</name>
    <message>
        <source>Continue %1?</source>
        <translation>%1 fortsetzen?</translation>
    </message>
    <message>
        <source>Run %1?</source>
        <translation>%1 starten?</translation>
    </message>
    <message>
        <source>Pause %1?</source>
        <translation>%1 pausieren?</translation>
    </message>
    <message>
        <source>Stop %1?

What waits to be synchronized is given up. The next run begins with the changes made from then on.</source>
        <translation>%1 stoppen?

Was noch zu übertragen ist, wird aufgegeben. Der nächste Lauf beginnt mit den Änderungen, die von da an gemacht werden.</translation>
    </message>
    <message numerus="yes">
        <source>and %Ln more</source>
        <translation>
            <numerusform>und %Ln weiteres</numerusform>
            <numerusform>und %Ln weitere</numerusform>
        </translation>
    </message>
    <message>
        <source>Changes of these tables were blocked before, and are missing on the destination:

%1

Mark the tables &quot;compare&quot;, until they have been compared?</source>
        <translation>Änderungen dieser Tabellen wurden bisher blockiert und fehlen am Ziel:

%1

Die Tabellen mit „vergleichen“ kennzeichnen, bis sie verglichen sind?</translation>
    </message>
    <message>
        <source>Plsease select a item first</source>
        <translation>Bitte zuerst einen Eintrag auswählen</translation>
    </message>
    <message>
        <source>can only select one owner&apos;s table</source>
        <translation>Es können nur Tabellen eines Besitzers ausgewählt werden</translation>
    </message>
</context>
<context>
    <name>JobRows</name>
    <message>
        <source>%1 ago</source>
        <translation>vor %1</translation>
    </message>
    <message>
        <source>in %1</source>
        <translation>in %1</translation>
    </message>
    <message>
        <source>JOB ID</source>
        <translation>AUFTRAG</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>Total Done</source>
        <translation>Insgesamt erledigt</translation>
    </message>
    <message>
        <source>Need To Do</source>
        <translation>Noch zu tun</translation>
    </message>
    <message>
        <source>Has Done</source>
        <translation>Erledigt</translation>
    </message>
    <message>
        <source>Blocked</source>
        <translation>Blockiert</translation>
    </message>
    <message>
        <source>Health</source>
        <translation>Zustand</translation>
    </message>
    <message>
        <source>Behind</source>
        <translation>Rückstand</translation>
    </message>
    <message>
        <source>Last Good Pass</source>
        <translation>Letzter guter Durchgang</translation>
    </message>
    <message>
        <source>Next Pass</source>
        <translation>Nächster Durchgang</translation>
    </message>
    <message>
        <source>Time To Loss</source>
        <translation>Verlust in</translation>
    </message>
</context>
<context>
    <name>ListTexts</name>
    <message numerus="yes">
        <source>%Ln data source(s)</source>
        <translation>
            <numerusform>%Ln Datenquelle</numerusform>
            <numerusform>%Ln Datenquellen</numerusform>
        </translation>
    </message>
    <message>
        <source>No primary keys of %1 are known.</source>
        <translation>Von %1 sind keine Primärschlüssel bekannt.</translation>
    </message>
    <message>
        <source>No indexes of %1 are known.</source>
        <translation>Von %1 sind keine Indizes bekannt.</translation>
    </message>
    <message>
        <source>No tables of %1 are known.</source>
        <translation>Von %1 sind keine Tabellen bekannt.</translation>
    </message>
    <message numerus="yes">
        <source>%Ln primary key(s)</source>
        <translation>
            <numerusform>%Ln Primärschlüssel</numerusform>
            <numerusform>%Ln Primärschlüssel</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln index(es)</source>
        <translation>
            <numerusform>%Ln Index</numerusform>
            <numerusform>%Ln Indizes</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln table(s)</source>
        <translation>
            <numerusform>%Ln Tabelle</numerusform>
            <numerusform>%Ln Tabellen</numerusform>
        </translation>
    </message>
    <message>
        <source>No data source is registered yet. Open the data source manager (OpenDbMgr) to add the first one.</source>
        <translation>Noch keine Datenquelle ist registriert. Die erste wird unter „Datenquellen“ hinzugefügt.</translation>
    </message>
    <message>
        <source>Select the data source and refresh it (RefreshDS) to read its catalogue anew.</source>
        <translation>Die Datenquelle auswählen und mit „Neu lesen“ ihren Katalog neu lesen.</translation>
    </message>
    <message>
        <source>Select the data source and connect to it (ConnectDS): then its catalogue is read.</source>
        <translation>Die Datenquelle auswählen und verbinden: dann wird ihr Katalog gelesen.</translation>
    </message>
</context>
<context>
    <name>LoginAdvice</name>
    <message>
        <source>The stored log-on to %1 was refused: %2</source>
        <translation>Die gespeicherte Anmeldung an %1 wurde abgelehnt: %2</translation>
    </message>
    <message>
        <source>%1 is unreachable with any log-on: %2</source>
        <translation>%1 ist mit keiner Anmeldung erreichbar: %2</translation>
    </message>
    <message>
        <source>What is entered here serves this connection only; nothing is stored.</source>
        <translation>Was hier eingegeben wird, gilt nur für diese Verbindung; nichts wird gespeichert.</translation>
    </message>
    <message>
        <source>Add connects, reads the catalogue and registers the data source when that went well.</source>
        <translation>„Hinzufügen“ verbindet, liest den Katalog und registriert die Datenquelle, wenn das gelang.</translation>
    </message>
    <message>
        <source>Save tries the log-on and then keeps it; jobs use it from their next connection on.</source>
        <translation>„Speichern“ probiert die Anmeldung aus und behält sie; Aufträge benutzen sie ab ihrer nächsten Verbindung.</translation>
    </message>
    <message>
        <source>Save will change the log-on of %1, not that of %2.</source>
        <translation>„Speichern“ ändert die Anmeldung von %1, nicht die von %2.</translation>
    </message>
    <message>
        <source>A data source keeps its name. To register another one, use New.</source>
        <translation>Eine Datenquelle behält ihren Namen. Eine weitere wird mit „Neu“ registriert.</translation>
    </message>
    <message>
        <source>Delete the data source %1?

Its log-on and what was read of its catalogue go. The database itself stays as it is.</source>
        <translation>Die Datenquelle %1 löschen?

Ihre Anmeldung und das, was von ihrem Katalog gelesen wurde, verschwinden. Die Datenbank selbst bleibt, wie sie ist.</translation>
    </message>
    <message numerus="yes">
        <source>%1 and %Ln more</source>
        <translation>
            <numerusform>%1 und %Ln weiterer</numerusform>
            <numerusform>%1 und %Ln weitere</numerusform>
        </translation>
    </message>
    <message>
        <source>This job uses it and is held: %1. It can not be run or continued until a data source of that name is registered.</source>
        <translation>Dieser Auftrag benutzt sie und wird gesperrt: %1. Er kann erst wieder gestartet oder fortgesetzt werden, wenn eine Datenquelle dieses Namens registriert ist.</translation>
    </message>
    <message>
        <source>These jobs use it and are held: %1. They can not be run or continued until a data source of that name is registered.</source>
        <translation>Diese Aufträge benutzen sie und werden gesperrt: %1. Sie können erst wieder gestartet oder fortgesetzt werden, wenn eine Datenquelle dieses Namens registriert ist.</translation>
    </message>
</context>
<context>
    <name>LoginFields</name>
    <message>
        <source>Mode</source>
        <translation>Modus</translation>
    </message>
    <message>
        <source>SYSDBA for the source of a job: reading its redo takes a SYSDBA log-on. NORMAL is enough for a destination.</source>
        <translation>SYSDBA für die Quelle eines Auftrags: Ihr Redo kann nur eine SYSDBA-Anmeldung lesen. Für ein Ziel genügt NORMAL.</translation>
    </message>
    <message>
        <source>&amp;Mode</source>
        <translation>&amp;Modus</translation>
    </message>
    <message>
        <source>Data&amp;base Name</source>
        <translation>&amp;Datenbankname</translation>
    </message>
    <message>
        <source>TNS name, such as ORCL</source>
        <translation>TNS-Name, etwa ORCL</translation>
    </message>
    <message>
        <source>The TNS name under which the Oracle client finds the database. With the sandbox: the name of a database in the sandbox folder.</source>
        <translation>Der TNS-Name, unter dem der Oracle-Client die Datenbank findet. Mit der Sandbox: der Name einer Datenbank im Sandbox-Ordner.</translation>
    </message>
    <message>
        <source>&amp;User ID</source>
        <translation>Ben&amp;utzer</translation>
    </message>
    <message>
        <source>Database user</source>
        <translation>Datenbankbenutzer</translation>
    </message>
    <message>
        <source>The database user to log on as</source>
        <translation>Der Datenbankbenutzer für die Anmeldung</translation>
    </message>
    <message>
        <source>&amp;Password</source>
        <translation>&amp;Passwort</translation>
    </message>
    <message>
        <source>The user&apos;s password. It is stored enciphered, in a file that only you can read.</source>
        <translation>Das Passwort des Benutzers. Es wird verschlüsselt gespeichert, in einer Datei, die niemand sonst lesen kann.</translation>
    </message>
</context>
<context>
    <name>ProgressWindow</name>
    <message>
        <source>Cancelling ...</source>
        <translation>Bricht ab ...</translation>
    </message>
</context>
<context>
    <name>SchemaTexts</name>
    <message>
        <source>This cannot be undone.</source>
        <translation>Das kann nicht rückgängig gemacht werden.</translation>
    </message>
    <message numerus="yes">
        <source>%Ln table(s) of %1 will be dropped with all rows.</source>
        <translation>
            <numerusform>%Ln Tabelle von %1 wird mit allen Zeilen gelöscht.</numerusform>
            <numerusform>%Ln Tabellen von %1 werden mit allen Zeilen gelöscht.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln primary key(s) of %1 will be dropped, and with them every foreign key that references them, whoever owns it. The rows stay.</source>
        <translation>
            <numerusform>%Ln Primärschlüssel von %1 wird gelöscht, mit ihm jeder Fremdschlüssel, der auf ihn verweist, wem er auch gehört. Die Zeilen bleiben.</numerusform>
            <numerusform>%Ln Primärschlüssel von %1 werden gelöscht, mit ihnen jeder Fremdschlüssel, der auf sie verweist, wem er auch gehört. Die Zeilen bleiben.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln index(es) of %1 will be dropped. The rows stay.</source>
        <translation>
            <numerusform>%Ln Index von %1 wird gelöscht. Die Zeilen bleiben.</numerusform>
            <numerusform>%Ln Indizes von %1 werden gelöscht. Die Zeilen bleiben.</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 of %2 will be created on %3. The tables must be there already.</source>
        <translation>%1 von %2 auf %3 anlegen. Die Tabellen müssen dort schon vorhanden sein.</translation>
    </message>
    <message>
        <source>%1 of %2 will be created on %3.</source>
        <translation>%1 von %2 auf %3 anlegen.</translation>
    </message>
    <message>
        <source>%1 of %2 will be created on %3, with primary keys and indexes.</source>
        <translation>%1 von %2 auf %3 anlegen, mit Primärschlüsseln und Indizes.</translation>
    </message>
    <message>
        <source>%1 of %2 will be created on %3, with primary keys.</source>
        <translation>%1 von %2 auf %3 anlegen, mit Primärschlüsseln.</translation>
    </message>
    <message>
        <source>Columns travel with their names, types, sizes and whether they may be empty; rows, foreign keys, checks, defaults, triggers and grants do not. The owners must be there already.</source>
        <translation>Spalten kommen mit Namen, Typ, Größe und Pflichtangabe mit; Zeilen, Fremdschlüssel, Checks, Vorgabewerte, Trigger und Rechte nicht. Die Besitzer müssen dort schon vorhanden sein.</translation>
    </message>
    <message>
        <source>What is there already under the same name is left as it is and reported as failed.</source>
        <translation>Was dort unter demselben Namen schon vorhanden ist, bleibt und wird als Fehler gemeldet.</translation>
    </message>
    <message>
        <source>A table that is there already under the same name is dropped first, with all its rows and the foreign keys that reference it.</source>
        <translation>Eine Tabelle, die dort unter demselben Namen schon vorhanden ist, wird zuerst gelöscht, mit allen Zeilen und den Fremdschlüsseln, die auf sie verweisen.</translation>
    </message>
    <message>
        <source>What is there already under the same name is dropped first.</source>
        <translation>Was dort unter demselben Namen schon vorhanden ist, wird zuerst gelöscht.</translation>
    </message>
    <message>
        <source>Indexes travel only together with primary keys: check &quot;Include Primary Key&quot;, too.</source>
        <translation>Indizes kommen nur mit Primärschlüsseln mit: auch „Mit Primärschlüssel“ ankreuzen.</translation>
    </message>
    <message>
        <source>&quot;Prompt Before Drop&quot; changes nothing: &quot;Drop Target&quot; asks once, with or without it.</source>
        <translation>„Vor dem Löschen fragen“ ändert nichts: „Ziel löschen“ fragt so oder so einmal.</translation>
    </message>
    <message>
        <source>%1 of %2 failed, the first one with:
%3</source>
        <translation>%1 von %2 gescheitert, das erste mit:
%3</translation>
    </message>
    <message>
        <source>Cancelled: %1 of %2 were done and stay done, %3 were not begun.</source>
        <translation>Abgebrochen: %1 von %2 wurden ausgeführt und bleiben es, %3 wurden nicht begonnen.</translation>
    </message>
    <message>
        <source>%1 primary key(s) to drop:</source>
        <translation>%1 Primärschlüssel zu löschen:</translation>
    </message>
    <message>
        <source>%1 indexe(s) to drop:</source>
        <translation>%1 Index(e) zu löschen:</translation>
    </message>
    <message>
        <source>%1 Table(s) to drop:</source>
        <translation>%1 Tabelle(n) zu löschen:</translation>
    </message>
    <message>
        <source>%1 primary key(s) to migrate:</source>
        <translation>%1 Primärschlüssel zu migrieren:</translation>
    </message>
    <message>
        <source>%1 indexe(s) to migrate:</source>
        <translation>%1 Index(e) zu migrieren:</translation>
    </message>
    <message>
        <source>%1 Table(s) to migrate:</source>
        <translation>%1 Tabelle(n) zu migrieren:</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message numerus="yes">
        <source>Foreign keys of other tables that reference them are dropped, too.</source>
        <translation>
            <numerusform>Fremdschlüssel anderer Tabellen, die auf sie verweisen, werden auch gelöscht.</numerusform>
            <numerusform>Fremdschlüssel anderer Tabellen, die auf sie verweisen, werden auch gelöscht.</numerusform>
        </translation>
    </message>
    <message>
        <source>A table that foreign keys of other tables reference stays and is reported as failed.</source>
        <translation>Eine Tabelle, auf die Fremdschlüssel anderer Tabellen verweisen, bleibt und wird als Fehler gemeldet.</translation>
    </message>
    <message>
        <source>The primary key %1 on %2 and every foreign key that references it will be dropped and created again, the key under the new name. What can not be created again is told in the message list, with its statement.</source>
        <translation>Der Primärschlüssel %1 auf %2 und jeder Fremdschlüssel, der auf ihn verweist, werden gelöscht und neu angelegt, der Schlüssel unter dem neuen Namen. Was nicht wieder angelegt werden kann, steht mit seiner Anweisung in der Meldungsliste.</translation>
    </message>
    <message>
        <source>The index %1 on %2 will get the new name.</source>
        <translation>Der Index %1 auf %2 bekommt den neuen Namen.</translation>
    </message>
    <message>
        <source>The table %1 on %2 will get the new name. Jobs know it by the old one until their table lists are refreshed.</source>
        <translation>Die Tabelle %1 auf %2 bekommt den neuen Namen. Aufträge kennen sie unter dem alten, bis ihre Tabellenlisten neu gelesen sind.</translation>
    </message>
    <message>
        <source>Choose the data source on which %1 of %2 will be created.</source>
        <translation>Die Datenquelle wählen, auf der %1 von %2 angelegt werden.</translation>
    </message>
    <message numerus="yes">
        <source>and %Ln more</source>
        <translation>
            <numerusform>und %Ln weiteres</numerusform>
            <numerusform>und %Ln weitere</numerusform>
        </translation>
    </message>
    <message>
        <source>&quot;Drop Target&quot; is checked. What is there on %1 under these names is dropped, with all its rows and the foreign keys that reference it, and can not be brought back:

%2

Go on?</source>
        <translation>„Ziel löschen“ ist angekreuzt. Was auf %1 unter diesen Namen vorhanden ist, wird mit allen Zeilen und den Fremdschlüsseln darauf unwiderruflich gelöscht:

%2

Fortfahren?</translation>
    </message>
    <message>
        <source>&quot;Drop Target&quot; is checked. What is there on %1 under these names is dropped, and can not be brought back:

%2

Go on?</source>
        <translation>„Ziel löschen“ ist angekreuzt. Was auf %1 unter diesen Namen vorhanden ist, wird unwiderruflich gelöscht:

%2

Fortfahren?</translation>
    </message>
    <message>
        <source>Cancelled, nothing was changed</source>
        <translation>Abgebrochen, nichts wurde geändert</translation>
    </message>
    <message>
        <source>Every result is in the message list.</source>
        <translation>Alle Ergebnisse stehen in der Meldungsliste.</translation>
    </message>
    <message>
        <source>error.log cannot be written, so the results are not in the message list. Make room in the working folder.</source>
        <translation>error.log kann nicht geschrieben werden, darum stehen die Ergebnisse nicht in der Meldungsliste. Bitte im Arbeitsordner Platz schaffen.</translation>
    </message>
</context>
<context>
    <name>SettingsTexts</name>
    <message>
        <source>Choose the file of the client library</source>
        <translation>Bitte die Datei der Client-Bibliothek wählen</translation>
    </message>
    <message>
        <source>There is no file %1</source>
        <translation>Es gibt keine Datei %1</translation>
    </message>
</context>
<context>
    <name>SourceConnection</name>
    <message>
        <source>Connect</source>
        <translation>Verbinden</translation>
    </message>
    <message>
        <source>The log-on was to %1, but the data source is %2. Nothing was changed. Another database is added in the data source manager.</source>
        <translation>Die Anmeldung galt %1, die Datenquelle ist aber %2. Nichts wurde geändert. Eine weitere Datenbank wird unter „Datenquellen“ hinzugefügt.</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>Neu lesen</translation>
    </message>
    <message>
        <source>The lists of %1 show what had been read until then. Refresh again when the cause is mended.</source>
        <translation>Die Listen von %1 zeigen, was bis dahin gelesen war. Bitte noch einmal neu lesen, wenn die Ursache behoben ist.</translation>
    </message>
    <message>
        <source>The lists of %1 are as they were.</source>
        <translation>Die Listen von %1 sind, wie sie waren.</translation>
    </message>
</context>
<context>
    <name>SourceListModel</name>
    <message>
        <source>Data Source</source>
        <translation>Datenquelle</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>UserName</source>
        <translation>Benutzer</translation>
    </message>
    <message>
        <source>Mode</source>
        <translation>Modus</translation>
    </message>
</context>
<context>
    <name>TableRows</name>
    <message>
        <source>A change of this table was not applied, see setaside.sql in the job&apos;s folder. Compare the table with the destination&apos;s, then choose Compared in its menu</source>
        <translation>Eine Änderung dieser Tabelle wurde nicht übertragen, siehe setaside.sql im Ordner des Auftrags. Die Tabelle mit der am Ziel vergleichen, dann in ihrem Menü „Verglichen“ wählen</translation>
    </message>
    <message>
        <source>Table Name</source>
        <translation>Tabelle</translation>
    </message>
    <message>
        <source>Source Owner</source>
        <translation>Besitzer Quelle</translation>
    </message>
    <message>
        <source>Remote Owner</source>
        <translation>Besitzer Ziel</translation>
    </message>
    <message>
        <source>Begin Rows</source>
        <translation>Zeilen Anfang</translation>
    </message>
    <message>
        <source>Current Rows</source>
        <translation>Zeilen jetzt</translation>
    </message>
    <message>
        <source>Total Synced </source>
        <translation>Übertr. gesamt</translation>
    </message>
    <message>
        <source>Compare</source>
        <translation>Vergleichen</translation>
    </message>
    <message>
        <source>Rows</source>
        <translation>Zeilen</translation>
    </message>
    <message>
        <source>Total Blocked </source>
        <translation>Insgesamt blockiert</translation>
    </message>
</context>
<context>
    <name>quillmere::AboutBox</name>
    <message>
        <source>Replicates Oracle databases from their redo</source>
        <translation>Repliziert Oracle-Datenbanken aus ihrem Redo</translation>
    </message>
    <message>
        <source>About %1</source>
        <translation>Über %1</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>Copy these lines, for a question or a report</source>
        <translation>Diese Zeilen kopieren, für eine Frage oder einen Bericht</translation>
    </message>
    <message>
        <source>C&amp;lose</source>
        <translation>&amp;Schließen</translation>
    </message>
</context>
<context>
    <name>quillmere::Banner</name>
    <message>
        <source>control  options</source>
        <translation>Optionen</translation>
    </message>
    <message>
        <source>Options</source>
        <translation>Optionen</translation>
    </message>
</context>
<context>
    <name>quillmere::DatabaseTree</name>
    <message>
        <source>Primary Key</source>
        <translation>Primärschlüssel</translation>
    </message>
    <message>
        <source>Index</source>
        <translation>Index</translation>
    </message>
    <message>
        <source>Table</source>
        <translation>Tabelle</translation>
    </message>
    <message>
        <source>ORACLE</source>
        <translation>ORACLE</translation>
    </message>
</context>
<context>
    <name>quillmere::DoctorPage</name>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>warning</source>
        <translation>Warnung</translation>
    </message>
    <message>
        <source>failure</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Checks with a failure: %1, with a warning: %2, OK: %3.</source>
        <translation>Prüfungen mit Fehler: %1, mit Warnung: %2, OK: %3.</translation>
    </message>
    <message>
        <source>No.</source>
        <translation>Nr.</translation>
    </message>
    <message>
        <source>Check</source>
        <translation>Prüfung</translation>
    </message>
    <message>
        <source>Result</source>
        <translation>Ergebnis</translation>
    </message>
    <message>
        <source>Where</source>
        <translation>Wo</translation>
    </message>
    <message>
        <source>Why</source>
        <translation>Warum</translation>
    </message>
    <message>
        <source>Cure</source>
        <translation>Abhilfe</translation>
    </message>
    <message>
        <source>Findings</source>
        <translation>Befunde</translation>
    </message>
    <message>
        <source>The selected finding and its cure</source>
        <translation>Der gewählte Befund und seine Abhilfe</translation>
    </message>
    <message>
        <source>Exa&amp;mine</source>
        <translation>&amp;Untersuchen</translation>
    </message>
    <message>
        <source>Asks both databases; neither of them is changed</source>
        <translation>Fragt beide Datenbanken; keine wird verändert</translation>
    </message>
    <message>
        <source>&amp;Copy cures</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>Copies all cures, to be pasted where they are run</source>
        <translation>Kopiert alle Abhilfen, um sie dort einzufügen, wo sie ausgeführt werden</translation>
    </message>
    <message>
        <source>S&amp;ave cures ...</source>
        <translation>Spei&amp;chern ...</translation>
    </message>
    <message>
        <source>Writes all cures to a file for the administrator</source>
        <translation>Schreibt alle Abhilfen in eine Datei für den Administrator</translation>
    </message>
    <message>
        <source>Result of the examination</source>
        <translation>Ergebnis der Untersuchung</translation>
    </message>
    <message>
        <source>Looks at what could keep the job from running well, and says what cures it.</source>
        <translation>Sucht, was den Auftrag behindert, und sagt, was abhilft.</translation>
    </message>
    <message>
        <source>Doctor</source>
        <translation>Diagnose</translation>
    </message>
    <message>
        <source>Examined at %1. %2</source>
        <translation>Untersucht: %1. %2</translation>
    </message>
    <message>
        <source>It was ended before all checks were made.</source>
        <translation>Vor der letzten Prüfung beendet.</translation>
    </message>
    <message>
        <source>Cure:</source>
        <translation>Abhilfe:</translation>
    </message>
    <message>
        <source>Cure, on %1:</source>
        <translation>Abhilfe, auf %1:</translation>
    </message>
    <message>
        <source>Save cures</source>
        <translation>Abhilfen speichern</translation>
    </message>
    <message>
        <source>SQL files (*.sql);;All files (*)</source>
        <translation>SQL-Dateien (*.sql);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Docto&amp;r</source>
        <translation>Dia&amp;gnose</translation>
    </message>
</context>
<context>
    <name>quillmere::ExplorerFrame</name>
    <message>
        <source>Expand or collapse the tree</source>
        <translation>Baum auf- oder zuklappen</translation>
    </message>
    <message>
        <source>Tree options</source>
        <translation>Optionen des Baums</translation>
    </message>
    <message>
        <source>Back to %1 and its actions (Alt+Up)</source>
        <translation>Zurück zu %1 und seinen Aktionen (Alt+Hoch)</translation>
    </message>
    <message>
        <source>Back to %1</source>
        <translation>Zurück zu %1</translation>
    </message>
    <message>
        <source>%1, %2 shown</source>
        <translation>%1, %2 gezeigt</translation>
    </message>
    <message>
        <source>%1, %2 selected</source>
        <translation>%1, %2 ausgewählt</translation>
    </message>
</context>
<context>
    <name>quillmere::FilterLine</name>
    <message>
        <source>Find in the list</source>
        <translation>In der Liste suchen</translation>
    </message>
    <message>
        <source>Shows only the rows with this text in one of their columns (Ctrl+F)</source>
        <translation>Zeigt nur die Zeilen mit diesem Text in einer Spalte (Strg+F)</translation>
    </message>
</context>
<context>
    <name>quillmere::FirstMinute</name>
    <message>
        <source>Nothing is copied yet. Three steps to the first job:</source>
        <translation>Noch wird nichts kopiert. Drei Schritte zum ersten Auftrag:</translation>
    </message>
    <message>
        <source>1.  Register the database to copy &amp;from</source>
        <translation>1.  Quelldatenbank ein&amp;tragen</translation>
    </message>
    <message>
        <source>2.  Register the database to cop&amp;y to</source>
        <translation>2.  &amp;Zieldatenbank eintragen</translation>
    </message>
    <message>
        <source>3.  Make a job bet&amp;ween them</source>
        <translation>3.  Auftra&amp;g zwischen beiden anlegen</translation>
    </message>
    <message>
        <source>&amp;Try it with two sandbox databases</source>
        <translation>Mit zwei Sandbox-Datenbanken a&amp;usprobieren</translation>
    </message>
    <message>
        <source>Done: %1</source>
        <translation>Erledigt: %1</translation>
    </message>
    <message>
        <source>It needs both databases</source>
        <translation>Dazu braucht es beide Datenbanken</translation>
    </message>
    <message>
        <source>No Oracle server is needed: it makes two small databases in %1 and a job between them, and changes the first one every second while this window is open.</source>
        <translation>Ein Oracle-Server ist nicht nötig: In %1 entstehen zwei kleine Datenbanken und ein Auftrag zwischen ihnen, und die erste wird jede Sekunde geändert, solange dieses Fenster offen ist.</translation>
    </message>
</context>
<context>
    <name>quillmere::HistoryCharts</name>
    <message>
        <source>Picture of the job&apos;s history</source>
        <translation>Bild vom Verlauf des Auftrags</translation>
    </message>
    <message>
        <source>No pass ended in this time</source>
        <translation>In dieser Zeit endete kein Durchgang</translation>
    </message>
    <message>
        <source>d MMM hh:mm</source>
        <translation>d. MMM hh:mm</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>Passes: %1, failed: %2</source>
        <translation>Durchgänge: %1, gescheitert: %2</translation>
    </message>
</context>
<context>
    <name>quillmere::JobHead</name>
    <message>
        <source>without a pause</source>
        <translation>ohne Pause</translation>
    </message>
    <message>
        <source>every %1 min</source>
        <translation>alle %1 min</translation>
    </message>
    <message>
        <source>The job</source>
        <translation>Der Auftrag</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>Beschreibung</translation>
    </message>
    <message>
        <source>From %1 to %2, %3, by %4. </source>
        <translation>Von %1 nach %2, %3, nach %4. </translation>
    </message>
    <message>
        <source>. The redo it needs next is gone in %1</source>
        <translation>. Das Redo, das er als Nächstes braucht, ist weg in %1</translation>
    </message>
</context>
<context>
    <name>quillmere::JobPages</name>
    <message>
        <source>Pages of the job</source>
        <translation>Seiten des Auftrags</translation>
    </message>
</context>
<context>
    <name>quillmere::JobTreeModel</name>
    <message>
        <source>All Jobs</source>
        <translation>Alle Aufträge</translation>
    </message>
    <message>
        <source>Include</source>
        <translation>Einbezogen</translation>
    </message>
    <message>
        <source>Exclude</source>
        <translation>Ausgeschlossen</translation>
    </message>
</context>
<context>
    <name>quillmere::MessageListModel</name>
    <message>
        <source>error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>information</source>
        <translation>Information</translation>
    </message>
    <message>
        <source>%1  (%2 times)</source>
        <translation>%1  (%2 Mal)</translation>
    </message>
    <message>
        <source>%1, job %2</source>
        <translation>%1, Auftrag %2</translation>
    </message>
    <message>
        <source>Error: %1</source>
        <translation>Fehler: %1</translation>
    </message>
</context>
<context>
    <name>quillmere::MessagePanel</name>
    <message>
        <source>Messages</source>
        <translation>Meldungen</translation>
    </message>
    <message>
        <source>Show all errors and informaitons</source>
        <translation>Zeigt alle Fehler und Informationen</translation>
    </message>
    <message>
        <source>Find in the messages</source>
        <translation>In den Meldungen suchen</translation>
    </message>
    <message>
        <source>&amp;Errors only</source>
        <translation>Nur &amp;Fehler</translation>
    </message>
    <message>
        <source>What was said several times stands in a filtered list once</source>
        <translation>Was mehrmals gemeldet wurde, steht in einer gefilterten Liste nur einmal</translation>
    </message>
    <message>
        <source>Shows the latest; a click into the list counts as reading, too</source>
        <translation>Zeigt den neuesten; auch ein Klick in die Liste gilt als gelesen</translation>
    </message>
    <message numerus="yes">
        <source>%Ln unread error(s)</source>
        <translation>
            <numerusform>%Ln ungelesener Fehler</numerusform>
            <numerusform>%Ln ungelesene Fehler</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quillmere::MessageView</name>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>Select &amp;all</source>
        <translation>&amp;Alles auswählen</translation>
    </message>
    <message>
        <source>Clear &amp;selection</source>
        <translation>Auswahl auf&amp;heben</translation>
    </message>
    <message>
        <source>Open log &amp;folder</source>
        <translation>Ordner der &amp;Protokolle öffnen</translation>
    </message>
    <message>
        <source>The system has no program to open %1</source>
        <translation>Das System hat kein Programm, um %1 zu öffnen</translation>
    </message>
    <message>
        <source>&amp;Explain this message</source>
        <translation>Meldung &amp;erklären</translation>
    </message>
</context>
<context>
    <name>quillmere::NowPage</name>
    <message>
        <source>the last pass brought over what there was</source>
        <translation>der letzte Durchgang hat alles übertragen</translation>
    </message>
    <message>
        <source>more is missing on the destination than two intervals explain</source>
        <translation>am Ziel fehlt mehr, als zwei Intervalle erklären</translation>
    </message>
    <message>
        <source>the last pass failed, see Problem</source>
        <translation>der letzte Durchgang ist gescheitert, siehe Problem</translation>
    </message>
    <message>
        <source>rests where it is. Run continues it</source>
        <translation>ruht an seiner Stelle. „Start“ setzt ihn fort</translation>
    </message>
    <message>
        <source>Run begins with the changes made from then on</source>
        <translation>„Start“ beginnt mit den Änderungen, die von da an gemacht werden</translation>
    </message>
    <message>
        <source>not known yet</source>
        <translation>noch nicht bekannt</translation>
    </message>
    <message>
        <source>nothing that the last pass could see</source>
        <translation>nichts, was der letzte Durchgang sehen konnte</translation>
    </message>
    <message>
        <source>%1 of the source&apos;s time</source>
        <translation>%1 in der Zeit der Quelle</translation>
    </message>
    <message>
        <source>%1 ago</source>
        <translation>vor %1</translation>
    </message>
    <message>
        <source>none yet</source>
        <translation>noch keiner</translation>
    </message>
    <message>
        <source>now</source>
        <translation>jetzt</translation>
    </message>
    <message>
        <source>in %1</source>
        <translation>in %1</translation>
    </message>
    <message numerus="yes">
        <source>%Ln change(s)</source>
        <translation>
            <numerusform>%Ln Änderung</numerusform>
            <numerusform>%Ln Änderungen</numerusform>
        </translation>
    </message>
    <message>
        <source>Health</source>
        <translation>Zustand</translation>
    </message>
    <message>
        <source>Behind by</source>
        <translation>Rückstand</translation>
    </message>
    <message>
        <source>Last good pass</source>
        <translation>Letzter guter Durchgang</translation>
    </message>
    <message>
        <source>Next pass</source>
        <translation>Nächster Durchgang</translation>
    </message>
    <message>
        <source>Waiting</source>
        <translation>Wartet</translation>
    </message>
    <message>
        <source>Since its start</source>
        <translation>Seit dem Start</translation>
    </message>
    <message>
        <source>%1 of the batch in hand</source>
        <translation>%1 des jetzigen Stapels</translation>
    </message>
    <message>
        <source>%1 applied, %2 blocked</source>
        <translation>%1 übertragen, %2 blockiert</translation>
    </message>
    <message>
        <source>&amp;Now</source>
        <translation>&amp;Jetzt</translation>
    </message>
    <message>
        <source>now: the redo it needs next is going</source>
        <translation>jetzt: das Redo, das er als Nächstes braucht, verschwindet</translation>
    </message>
    <message>
        <source>in %1, unless the job goes on</source>
        <translation>in %1, wenn der Auftrag nicht weitergeht</translation>
    </message>
    <message numerus="yes">
        <source>%Ln more</source>
        <translation>
            <numerusform>%Ln weitere</numerusform>
            <numerusform>%Ln weitere</numerusform>
        </translation>
    </message>
    <message>
        <source>Does not fit</source>
        <translation>Passt nicht</translation>
    </message>
    <message>
        <source>Redo is gone</source>
        <translation>Redo ist weg</translation>
    </message>
    <message>
        <source>This job has never run. The doctor looks at what could keep it from running well.</source>
        <translation>Dieser Auftrag lief noch nie. Die Diagnose sucht, was ihn behindern könnte.</translation>
    </message>
    <message>
        <source>Ask the doc&amp;tor</source>
        <translation>Diagnose s&amp;tarten</translation>
    </message>
</context>
<context>
    <name>quillmere::PicturePage</name>
    <message>
        <source>Passes: %1, failed: %2. Applied: %3. Waiting at most: %4.</source>
        <translation>Durchgänge: %1, gescheitert: %2. Angewendet: %3. Wartend höchstens: %4.</translation>
    </message>
    <message>
        <source>Behind by at most: %1.</source>
        <translation>Rückstand höchstens: %1.</translation>
    </message>
    <message>
        <source>Where the job and its source stand, in words</source>
        <translation>Wo der Auftrag und seine Quelle stehen, in Worten</translation>
    </message>
    <message>
        <source>Over the &amp;last</source>
        <translation>&amp;Zeitraum</translation>
    </message>
    <message>
        <source>Over the last</source>
        <translation>Zeitraum</translation>
    </message>
    <message>
        <source>hour</source>
        <translation>Stunde</translation>
    </message>
    <message>
        <source>day</source>
        <translation>Tag</translation>
    </message>
    <message>
        <source>week</source>
        <translation>Woche</translation>
    </message>
    <message>
        <source>30 days</source>
        <translation>30 Tage</translation>
    </message>
    <message>
        <source>The picture in words</source>
        <translation>Das Bild in Worten</translation>
    </message>
    <message>
        <source>Ask the sour&amp;ce</source>
        <translation>&amp;Quelle fragen</translation>
    </message>
    <message>
        <source>Reads where the source stands now, its oldest redo and its open transactions</source>
        <translation>Liest, wo die Quelle jetzt steht, ihr ältestes Redo und ihre offenen Transaktionen</translation>
    </message>
    <message>
        <source>The source was asked at %1</source>
        <translation>Die Quelle wurde gefragt: %1</translation>
    </message>
    <message>
        <source>open from %1 on: %2</source>
        <translation>offen ab %1: %2</translation>
    </message>
    <message>
        <source>Ask the source</source>
        <translation>Quelle fragen</translation>
    </message>
    <message>
        <source>connect to %1</source>
        <translation>mit %1 verbinden</translation>
    </message>
    <message>
        <source>read where %1 stands</source>
        <translation>lesen, wo %1 steht</translation>
    </message>
    <message>
        <source>Pict&amp;ure</source>
        <translation>Ver&amp;lauf</translation>
    </message>
</context>
<context>
    <name>quillmere::PreviewPage</name>
    <message>
        <source>The source could not be read: %1</source>
        <translation>Die Quelle konnte nicht gelesen werden: %1</translation>
    </message>
    <message>
        <source>Goes on with a batch of %1 statements, number %2 is next.</source>
        <translation>Fährt mit einem Stapel von %1 Anweisungen fort, Nummer %2 ist die nächste.</translation>
    </message>
    <message>
        <source>Statements that the source has now: %1.</source>
        <translation>Anweisungen, die die Quelle jetzt hat: %1.</translation>
    </message>
    <message>
        <source>Read at %1. %2</source>
        <translation>Gelesen: %1. %2</translation>
    </message>
    <message>
        <source>Would execute %1 and block %2.</source>
        <translation>Würde %1 ausführen und %2 blockieren.</translation>
    </message>
    <message>
        <source>Table</source>
        <translation>Tabelle</translation>
    </message>
    <message>
        <source>Inserts</source>
        <translation>Inserts</translation>
    </message>
    <message>
        <source>Updates</source>
        <translation>Updates</translation>
    </message>
    <message>
        <source>Deletes</source>
        <translation>Deletes</translation>
    </message>
    <message>
        <source>Blocked</source>
        <translation>Blockiert</translation>
    </message>
    <message>
        <source>Because</source>
        <translation>Grund</translation>
    </message>
    <message>
        <source>Written to</source>
        <translation>Ziel</translation>
    </message>
    <message>
        <source>Previe&amp;w</source>
        <translation>Vors&amp;chau</translation>
    </message>
    <message>
        <source>Reads what the next pass would execute; nothing is written</source>
        <translation>Liest, was der nächste Durchgang ausführen würde; nichts wird geschrieben</translation>
    </message>
    <message>
        <source>What the next pass would do</source>
        <translation>Was der nächste Durchgang täte</translation>
    </message>
    <message>
        <source>Tables of the preview</source>
        <translation>Tabellen der Vorschau</translation>
    </message>
    <message>
        <source>Statements of the preview</source>
        <translation>Anweisungen der Vorschau</translation>
    </message>
    <message>
        <source>The selected statement</source>
        <translation>Die gewählte Anweisung</translation>
    </message>
    <message>
        <source>What the next pass would execute, and what it would block and why.</source>
        <translation>Was der nächste Durchgang ausführen und was er warum blockieren würde.</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Vorschau</translation>
    </message>
    <message>
        <source>connect to %1</source>
        <translation>mit %1 verbinden</translation>
    </message>
    <message>
        <source>read what %1 has</source>
        <translation>lesen, was %1 hat</translation>
    </message>
    <message>
        <source>(%1 bytes in all; &quot;job preview --json&quot; shows them)</source>
        <translation>(insgesamt %1 Bytes; &quot;job preview --json&quot; zeigt sie)</translation>
    </message>
    <message>
        <source>Pre&amp;view</source>
        <translation>&amp;Vorschau</translation>
    </message>
</context>
<context>
    <name>quillmere::ProblemPage</name>
    <message>
        <source>%1 on %2</source>
        <translation>%1 auf %2</translation>
    </message>
    <message numerus="yes">
        <source>%Ln time(s)</source>
        <translation>
            <numerusform>%Ln Mal</numerusform>
            <numerusform>%Ln Mal</numerusform>
        </translation>
    </message>
    <message>
        <source>%1, first %2, last %3</source>
        <translation>%1, zuerst %2, zuletzt %3</translation>
    </message>
    <message>
        <source>Problem</source>
        <translation>Problem</translation>
    </message>
    <message>
        <source>Failed at</source>
        <translation>Gescheitert an</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>What helps</source>
        <translation>Was hilft</translation>
    </message>
    <message>
        <source>Tried</source>
        <translation>Versucht</translation>
    </message>
    <message>
        <source>Row</source>
        <translation>Zeile</translation>
    </message>
    <message>
        <source>Statement</source>
        <translation>Anweisung</translation>
    </message>
    <message>
        <source>Re&amp;try now</source>
        <translation>&amp;Wiederholen</translation>
    </message>
    <message>
        <source>Makes a pass at once</source>
        <translation>Macht sofort einen Durchgang</translation>
    </message>
    <message>
        <source>S&amp;kip ...</source>
        <translation>Ü&amp;berspringen ...</translation>
    </message>
    <message>
        <source>Leaves the statement out, with a reason that is kept in skipped.sql</source>
        <translation>Lässt die Anweisung aus, mit einem Grund, der in skipped.sql festgehalten wird</translation>
    </message>
    <message>
        <source>E&amp;xclude the table</source>
        <translation>A&amp;usschließen</translation>
    </message>
    <message>
        <source>The job does without the table from now on</source>
        <translation>Der Auftrag kommt von nun an ohne die Tabelle aus</translation>
    </message>
    <message>
        <source>Stop the jo&amp;b</source>
        <translation>Stoppe&amp;n</translation>
    </message>
    <message>
        <source>Gives up what waits to be applied</source>
        <translation>Gibt auf, was noch zu übertragen ist</translation>
    </message>
    <message>
        <source>None: the job is stopped</source>
        <translation>Keines: der Auftrag ist gestoppt</translation>
    </message>
    <message>
        <source>None: the last pass did not fail</source>
        <translation>Keines: der letzte Durchgang ist nicht gescheitert</translation>
    </message>
    <message>
        <source>Waits for the end of the pass in hand ...</source>
        <translation>Wartet auf das Ende des laufenden Durchgangs ...</translation>
    </message>
    <message>
        <source>Exclude %1 from %2?

Its changes count as blocked from then on, those that wait among them, and are missing on the destination.</source>
        <translation>%1 aus %2 ausschließen?

Ihre Änderungen zählen von da an als blockiert, auch die wartenden, und fehlen am Ziel.</translation>
    </message>
    <message>
        <source>&amp;Problem</source>
        <translation>&amp;Problem</translation>
    </message>
    <message>
        <source>there %1</source>
        <translation>dort %1</translation>
    </message>
    <message>
        <source>expected %1</source>
        <translation>erwartet %1</translation>
    </message>
    <message>
        <source>given %1</source>
        <translation>gegeben %1</translation>
    </message>
    <message>
        <source>differs</source>
        <translation>anders</translation>
    </message>
    <message>
        <source>On the destination</source>
        <translation>Am Ziel</translation>
    </message>
    <message>
        <source>Sho&amp;w the row</source>
        <translation>Zeile &amp;zeigen</translation>
    </message>
    <message>
        <source>Asks the destination for the row that the statement is about</source>
        <translation>Fragt das Ziel nach der Zeile, um die es in der Anweisung geht</translation>
    </message>
    <message>
        <source>The destination&apos;s row</source>
        <translation>Die Zeile am Ziel</translation>
    </message>
</context>
<context>
    <name>quillmere::RowTable</name>
    <message>
        <source>No row has the text that is typed above</source>
        <translation>Keine Zeile enthält den Text, der oben steht</translation>
    </message>
</context>
<context>
    <name>quillmere::SchemaDialog</name>
    <message>
        <source>&amp;Abort</source>
        <translation>&amp;Abbrechen</translation>
    </message>
    <message>
        <source>Closes the dialog; nothing is changed</source>
        <translation>Schließt den Dialog; nichts wird geändert</translation>
    </message>
</context>
<context>
    <name>quillmere::ScnStripView</name>
    <message>
        <source>oldest redo there %1</source>
        <translation>ältestes Redo %1</translation>
    </message>
    <message>
        <source>oldest needed %1</source>
        <translation>gebraucht ab %1</translation>
    </message>
    <message>
        <source>applied %1</source>
        <translation>angewendet %1</translation>
    </message>
    <message>
        <source>captured %1</source>
        <translation>erfasst %1</translation>
    </message>
    <message>
        <source>now %1</source>
        <translation>jetzt %1</translation>
    </message>
    <message>
        <source>at the last pass %1</source>
        <translation>beim letzten Durchgang %1</translation>
    </message>
    <message>
        <source>Where the job and its source stand</source>
        <translation>Wo der Auftrag und seine Quelle stehen</translation>
    </message>
    <message>
        <source>Where the job stands is known once it has run</source>
        <translation>Wo der Auftrag steht, ist bekannt, wenn er gelaufen ist</translation>
    </message>
    <message>
        <source>No transaction is open</source>
        <translation>Keine Transaktion ist offen</translation>
    </message>
    <message>
        <source>Open transactions: %1, the oldest for %2 h: %3</source>
        <translation>Offene Transaktionen: %1, die älteste seit %2 h: %3</translation>
    </message>
</context>
<context>
    <name>quillmere::SettingsForm</name>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Messages</source>
        <translation>Meldungen</translation>
    </message>
    <message>
        <source>Log &amp;diagnostic lines</source>
        <translation>&amp;Diagnosezeilen protokollieren</translation>
    </message>
    <message>
        <source>The message log also says what each step of a job does</source>
        <translation>Das Protokoll sagt auch, was jeder Schritt eines Auftrags tut</translation>
    </message>
    <message>
        <source>Log CREATE TABLE &amp;statements before they run</source>
        <translation>&amp;CREATE TABLE vor dem Ausführen protokollieren</translation>
    </message>
    <message>
        <source>Migrating a table logs the statement that creates it</source>
        <translation>Beim Migrieren einer Tabelle wird die Anweisung protokolliert, die sie anlegt</translation>
    </message>
    <message>
        <source>Log data sources whose file is &amp;written</source>
        <translation>&amp;Geschriebene Datenquellen protokollieren</translation>
    </message>
    <message>
        <source>Saving the registry logs each data source whose file is written</source>
        <translation>Beim Speichern der Registrierung wird jede Datenquelle protokolliert, deren Datei geschrieben wird</translation>
    </message>
    <message>
        <source>Rows of the message list</source>
        <translation>Zeilen der Meldungsliste</translation>
    </message>
    <message>
        <source>When the message list is full it is emptied but for its latest row. The log files keep everything.</source>
        <translation>Ist die Meldungsliste voll, wird sie bis auf die neueste Zeile geleert. Die Protokolldateien behalten alles.</translation>
    </message>
    <message>
        <source>&amp;Rows of the message list:</source>
        <translation>&amp;Zeilen der Meldungsliste:</translation>
    </message>
    <message>
        <source>Jobs</source>
        <translation>Aufträge</translation>
    </message>
    <message>
        <source>What new jobs follow</source>
        <translation>Wem neue Aufträge folgen</translation>
    </message>
    <message>
        <source>Commits (recommended)</source>
        <translation>Commits (empfohlen)</translation>
    </message>
    <message>
        <source>Rows</source>
        <translation>Zeilen</translation>
    </message>
    <message>
        <source>What the dialog of a new job proposes; jobs that are there stay as they are</source>
        <translation>Was der Dialog eines neuen Auftrags vorschlägt; vorhandene Aufträge bleiben, wie sie sind</translation>
    </message>
    <message>
        <source>&amp;New jobs follow:</source>
        <translation>&amp;Neue Aufträge folgen:</translation>
    </message>
    <message>
        <source>Oracle client library</source>
        <translation>Oracle-Client-Bibliothek</translation>
    </message>
    <message>
        <source>The installed Oracle client</source>
        <translation>Der installierte Oracle-Client</translation>
    </message>
    <message>
        <source>The sandbox database, to try things out</source>
        <translation>Die Sandbox-Datenbank, zum Ausprobieren</translation>
    </message>
    <message>
        <source>A library file</source>
        <translation>Eine Bibliotheksdatei</translation>
    </message>
    <message>
        <source>&amp;Use:</source>
        <translation>&amp;Benutzen:</translation>
    </message>
    <message>
        <source>Path of the client library</source>
        <translation>Pfad der Client-Bibliothek</translation>
    </message>
    <message>
        <source>&amp;Browse...</source>
        <translation>D&amp;urchsuchen...</translation>
    </message>
    <message>
        <source>&amp;File:</source>
        <translation>Da&amp;tei:</translation>
    </message>
    <message>
        <source>none could be loaded</source>
        <translation>keine konnte geladen werden</translation>
    </message>
    <message>
        <source>In use now: %1
A change takes effect at the next start.</source>
        <translation>Jetzt benutzt: %1
Eine Änderung wirkt ab dem nächsten Start.</translation>
    </message>
    <message>
        <source>Appearance</source>
        <translation>Erscheinungsbild</translation>
    </message>
    <message>
        <source>Colours</source>
        <translation>Farben</translation>
    </message>
    <message>
        <source>As the system</source>
        <translation>Wie das System</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Hell</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Dunkel</translation>
    </message>
    <message>
        <source>&amp;Colours:</source>
        <translation>&amp;Farben:</translation>
    </message>
    <message>
        <source>A skin is on; it may have colours of its own.</source>
        <translation>Ein Skin ist eingeschaltet; er kann eigene Farben haben.</translation>
    </message>
    <message>
        <source>&amp;OK</source>
        <translation>&amp;OK</translation>
    </message>
    <message>
        <source>C&amp;ancel</source>
        <translation>&amp;Abbrechen</translation>
    </message>
    <message>
        <source>Libraries (*.so *.so.* *.dll *.dylib);;All files (*)</source>
        <translation>Bibliotheken (*.so *.so.* *.dll *.dylib);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>Sprache</translation>
    </message>
    <message>
        <source>&amp;Language:</source>
        <translation>&amp;Sprache:</translation>
    </message>
    <message>
        <source>The language changes at the next start. Messages and log files stay English.</source>
        <translation>Die Sprache wechselt beim nächsten Start. Meldungen und Protokolldateien bleiben englisch.</translation>
    </message>
    <message>
        <source>Jobs that were at work at the end &amp;go on by themselves</source>
        <translation>Aufträge, die am Ende &amp;liefen, laufen von selbst weiter</translation>
    </message>
    <message>
        <source>At the next start they are continued, as Run does with a paused job; otherwise they wait for somebody to do so</source>
        <translation>Beim nächsten Start werden sie fortgesetzt wie ein pausierter Auftrag durch Starten; sonst warten sie darauf, dass es jemand tut</translation>
    </message>
    <message>
        <source>Health command</source>
        <translation>Zustandsbefehl</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keiner</translation>
    </message>
    <message>
        <source>A program with its arguments that is run once for each change of a job&apos;s health, with what changed as JSON on its standard input; 30 s at most</source>
        <translation>Ein Programm mit seinen Argumenten, das bei jeder Änderung des Zustands eines Auftrags einmal läuft, mit der Änderung als JSON auf der Standardeingabe; höchstens 30 s</translation>
    </message>
    <message>
        <source>&amp;Health command:</source>
        <translation>Zustandsbefe&amp;hl:</translation>
    </message>
    <message>
        <source>The health command can not be understood: %1</source>
        <translation>Der Zustandsbefehl ist nicht zu verstehen: %1</translation>
    </message>
</context>
<context>
    <name>quillmere::SkipForm</name>
    <message>
        <source>%1, on %2</source>
        <translation>%1, auf %2</translation>
    </message>
    <message>
        <source>%1, is left out with its whole transaction.</source>
        <translation>%1, wird mit der ganzen Transaktion ausgelassen.</translation>
    </message>
    <message>
        <source>%1, is left out.</source>
        <translation>%1, wird ausgelassen.</translation>
    </message>
    <message>
        <source>It counts as blocked and is kept in skipped.sql of the job&apos;s folder; its table bears the mark &quot;compare&quot; until it has been compared.</source>
        <translation>Sie zählt als blockiert und bleibt in skipped.sql im Ordner des Auftrags erhalten; ihre Tabelle ist mit „vergleichen“ gekennzeichnet, bis sie verglichen ist.</translation>
    </message>
    <message>
        <source>statement %1 of %2</source>
        <translation>Anweisung %1 von %2</translation>
    </message>
    <message>
        <source>Skip in %1</source>
        <translation>Überspringen in %1</translation>
    </message>
    <message>
        <source>Statement</source>
        <translation>Anweisung</translation>
    </message>
    <message>
        <source>Reason</source>
        <translation>Grund</translation>
    </message>
    <message>
        <source>&amp;Reason, for whoever asks later</source>
        <translation>&amp;Grund, für spätere Fragen</translation>
    </message>
    <message>
        <source>S&amp;kip</source>
        <translation>Ü&amp;berspringen</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Abbrechen</translation>
    </message>
</context>
<context>
    <name>quillmere::SourceChoice</name>
    <message>
        <source>Choose a data source</source>
        <translation>Datenquelle wählen</translation>
    </message>
    <message>
        <source>This data source is not registered</source>
        <translation>Diese Datenquelle ist nicht registriert</translation>
    </message>
</context>
<context>
    <name>quillmere::Splash</name>
    <message>
        <source>Reading the working folder</source>
        <translation>Liest den Arbeitsordner</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>Making the windows</source>
        <translation>Baut die Fenster auf</translation>
    </message>
</context>
<context>
    <name>quillmere::StatementRows</name>
    <message>
        <source>done</source>
        <translation>erledigt</translation>
    </message>
    <message>
        <source>execute</source>
        <translation>ausführen</translation>
    </message>
    <message>
        <source>block</source>
        <translation>blockieren</translation>
    </message>
    <message>
        <source>(no table)</source>
        <translation>(keine Tabelle)</translation>
    </message>
    <message>
        <source>No.</source>
        <translation>Nr.</translation>
    </message>
    <message>
        <source>Next pass</source>
        <translation>Nächster Durchgang</translation>
    </message>
    <message>
        <source>Table</source>
        <translation>Tabelle</translation>
    </message>
    <message>
        <source>Statement</source>
        <translation>Anweisung</translation>
    </message>
    <message>
        <source>Because</source>
        <translation>Grund</translation>
    </message>
</context>
<context>
    <name>quillmere::TDbConnForm</name>
    <message>
        <source>Data Sources</source>
        <translation>Datenquellen</translation>
    </message>
    <message>
        <source>Registered data sources</source>
        <translation>Registrierte Datenquellen</translation>
    </message>
    <message>
        <source>No data source is registered yet. Choose New to add one.</source>
        <translation>Noch keine Datenquelle ist registriert. „Neu“ fügt eine hinzu.</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>S&amp;chließen</translation>
    </message>
    <message>
        <source>&amp;New</source>
        <translation>&amp;Neu</translation>
    </message>
    <message>
        <source>Register another data source</source>
        <translation>Eine weitere Datenquelle registrieren</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <source>Delete the selected data source from the registry, with its password (Del)</source>
        <translation>Die ausgewählte Datenquelle mit ihrem Passwort aus der Registrierung löschen (Entf)</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>Change the log-on of the selected data source</source>
        <translation>Die Anmeldung der ausgewählten Datenquelle ändern</translation>
    </message>
    <message>
        <source>&amp;Test</source>
        <translation>&amp;Testen</translation>
    </message>
    <message>
        <source>Try to connect to the selected data source</source>
        <translation>Versucht, die ausgewählte Datenquelle zu verbinden</translation>
    </message>
    <message>
        <source>&amp;Add</source>
        <translation>&amp;Hinzufügen</translation>
    </message>
    <message>
        <source>Connect, read the catalogue and register the data source</source>
        <translation>Verbinden, Katalog lesen und die Datenquelle registrieren</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Speichern</translation>
    </message>
    <message>
        <source>Try the log-on and keep it</source>
        <translation>Die Anmeldung ausprobieren und behalten</translation>
    </message>
    <message>
        <source>Ab&amp;ort</source>
        <translation>&amp;Abbrechen</translation>
    </message>
    <message>
        <source>Leave the fields without a change (Esc)</source>
        <translation>Die Felder ohne Änderung verlassen (Esc)</translation>
    </message>
    <message>
        <source>You must choose a data source to edit</source>
        <translation>Bitte eine Datenquelle zum Bearbeiten auswählen</translation>
    </message>
    <message>
        <source>You must select an Database to delete</source>
        <translation>Bitte eine Datenbank zum Löschen auswählen</translation>
    </message>
    <message>
        <source>You must choose a data source to test</source>
        <translation>Bitte eine Datenquelle zum Testen auswählen</translation>
    </message>
    <message>
        <source>Test Data Source</source>
        <translation>Datenquelle testen</translation>
    </message>
    <message>
        <source>Add Data Source</source>
        <translation>Datenquelle hinzufügen</translation>
    </message>
    <message>
        <source>%1 is registered, but its catalogue could not be read:

%2</source>
        <translation>%1 ist registriert, aber der Katalog konnte nicht gelesen werden:

%2</translation>
    </message>
    <message>
        <source>Save Data Source</source>
        <translation>Datenquelle speichern</translation>
    </message>
    <message>
        <source>Stored, not shown</source>
        <translation>Gespeichert, nicht gezeigt</translation>
    </message>
    <message>
        <source>Log-on</source>
        <translation>Anmeldung</translation>
    </message>
    <message>
        <source>New registers a data source; Edit changes the log-on of the selected one.</source>
        <translation>„Neu“ registriert eine Datenquelle; „Bearbeiten“ ändert die Anmeldung der ausgewählten.</translation>
    </message>
    <message>
        <source>New data source</source>
        <translation>Neue Datenquelle</translation>
    </message>
    <message>
        <source>Change the log-on of %1</source>
        <translation>Anmeldung von %1 ändern</translation>
    </message>
    <message>
        <source>%1

Data source: %2</source>
        <translation>%1

Datenquelle: %2</translation>
    </message>
</context>
<context>
    <name>quillmere::TDbLoginForm</name>
    <message>
        <source>Log-on</source>
        <translation>Anmeldung</translation>
    </message>
    <message>
        <source>Logon  to:</source>
        <translation>Anmelden an:</translation>
    </message>
    <message>
        <source>&amp;Login</source>
        <translation>&amp;Anmelden</translation>
    </message>
    <message>
        <source>Connect to the database</source>
        <translation>Mit der Datenbank verbinden</translation>
    </message>
    <message>
        <source>&amp;Abort</source>
        <translation>A&amp;bbrechen</translation>
    </message>
    <message>
        <source>Close without connecting (Esc)</source>
        <translation>Schließen, ohne zu verbinden (Esc)</translation>
    </message>
</context>
<context>
    <name>quillmere::TDbMgrForm</name>
    <message>
        <source>All Databases</source>
        <translation>Alle Datenbanken</translation>
    </message>
    <message>
        <source>Contents of the selected node</source>
        <translation>Inhalt des ausgewählten Knotens</translation>
    </message>
    <message>
        <source>Select a data source to refresh it</source>
        <translation>Zum Neulesen eine Datenquelle auswählen</translation>
    </message>
    <message>
        <source>%1 is refreshed from its own node: select it first</source>
        <translation>%1 wird an ihrem eigenen Knoten neu gelesen: bitte zuerst auswählen</translation>
    </message>
    <message>
        <source>%1 is not connected. ConnectDS connects it and reads its lists</source>
        <translation>%1 ist nicht verbunden. „Verbinden“ verbindet sie und liest ihre Listen</translation>
    </message>
</context>
<context>
    <name>quillmere::TDropForm</name>
    <message>
        <source>Drop Key/Table/Index</source>
        <translation>Schlüssel/Tabelle/Index löschen</translation>
    </message>
    <message>
        <source>Drop All &amp;Foreign Key Constrains</source>
        <translation>Alle &amp;Fremdschlüssel mit löschen</translation>
    </message>
    <message>
        <source>Tables go although foreign keys of other tables reference them</source>
        <translation>Tabellen werden gelöscht, auch wenn Fremdschlüssel anderer Tabellen auf sie verweisen</translation>
    </message>
    <message>
        <source>Only for tables; primary keys always take along the foreign keys that reference them</source>
        <translation>Nur für Tabellen; Primärschlüssel nehmen die Fremdschlüssel, die auf sie verweisen, immer mit</translation>
    </message>
    <message>
        <source>&amp;Drop</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <source>Drops all of the list</source>
        <translation>Löscht alles in der Liste</translation>
    </message>
    <message>
        <source>Drop</source>
        <translation>Löschen</translation>
    </message>
</context>
<context>
    <name>quillmere::TFilterForm</name>
    <message>
        <source>Include table(s) to be synchronized</source>
        <translation>Tabelle(n) in die Übertragung einbeziehen</translation>
    </message>
    <message>
        <source>Exclude table(s) to be synchronized</source>
        <translation>Tabelle(n) von der Übertragung ausschließen</translation>
    </message>
    <message>
        <source>Synchronize Table(s) to another Owner</source>
        <translation>Tabelle(n) zu einem anderen Besitzer übertragen</translation>
    </message>
    <message>
        <source>Include Tables</source>
        <translation>Tabellen einbeziehen</translation>
    </message>
    <message>
        <source>Exclude Tables</source>
        <translation>Tabellen ausschließen</translation>
    </message>
    <message>
        <source>Change Remote Owner</source>
        <translation>Besitzer am Ziel ändern</translation>
    </message>
    <message>
        <source>&amp;Current Owner</source>
        <translation>Jetziger &amp;Besitzer</translation>
    </message>
    <message>
        <source>Current Owner</source>
        <translation>Jetziger Besitzer</translation>
    </message>
    <message>
        <source>The tables&apos; owner on the source</source>
        <translation>Der Besitzer der Tabellen an der Quelle</translation>
    </message>
    <message>
        <source>&amp;New Owner Name</source>
        <translation>&amp;Neuer Besitzer</translation>
    </message>
    <message>
        <source>New Owner Name</source>
        <translation>Neuer Besitzer</translation>
    </message>
    <message>
        <source>Empty: the same owner as on the source</source>
        <translation>Leer: derselbe Besitzer wie an der Quelle</translation>
    </message>
    <message>
        <source>The owner to write to on the destination, exactly as the database spells it. It has to exist there.</source>
        <translation>Der Besitzer am Ziel, genau so geschrieben wie in der Datenbank. Er muss dort vorhanden sein.</translation>
    </message>
    <message>
        <source>&amp;TalbleList</source>
        <translation>&amp;Tabellen</translation>
    </message>
    <message>
        <source>Tables</source>
        <translation>Tabellen</translation>
    </message>
    <message>
        <source>Execute changes all of these tables</source>
        <translation>„Ausführen“ ändert alle diese Tabellen</translation>
    </message>
    <message>
        <source>E&amp;xecute</source>
        <translation>Ausfüh&amp;ren</translation>
    </message>
    <message>
        <source>&amp;Abort</source>
        <translation>&amp;Abbrechen</translation>
    </message>
    <message>
        <source>Close without a change (Esc)</source>
        <translation>Schließen ohne Änderung (Esc)</translation>
    </message>
    <message numerus="yes">
        <source>%Ln table(s)</source>
        <translation>
            <numerusform>%Ln Tabelle</numerusform>
            <numerusform>%Ln Tabellen</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quillmere::TJobEditForm</name>
    <message>
        <source>&amp;OK</source>
        <translation>&amp;OK</translation>
    </message>
    <message>
        <source>Abor&amp;t</source>
        <translation>Abbr&amp;echen</translation>
    </message>
    <message>
        <source>Close without a change (Esc)</source>
        <translation>Schließen ohne Änderung (Esc)</translation>
    </message>
    <message>
        <source>&amp;All Data  Sources:</source>
        <translation>&amp;Alle Datenquellen:</translation>
    </message>
    <message>
        <source>All data sources</source>
        <translation>Alle Datenquellen</translation>
    </message>
    <message>
        <source>A job takes two data sources, from one to the other. Add them first.</source>
        <translation>Ein Auftrag braucht zwei Datenquellen, von der einen zur anderen. Bitte zuerst hinzufügen.</translation>
    </message>
    <message>
        <source>New Data&amp;base Connection</source>
        <translation>Neue Daten&amp;bankverbindung</translation>
    </message>
    <message>
        <source>New Database Connection</source>
        <translation>Neue Datenbankverbindung</translation>
    </message>
    <message>
        <source>Register another data source</source>
        <translation>Eine weitere Datenquelle registrieren</translation>
    </message>
    <message>
        <source>Job Name</source>
        <translation>Name des Auftrags</translation>
    </message>
    <message>
        <source>The job&apos;s folder and file bear this name, too</source>
        <translation>Auch Ordner und Datei des Auftrags tragen diesen Namen</translation>
    </message>
    <message>
        <source>&amp;Job Name</source>
        <translation>&amp;Name des Auftrags</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>Beschreibung</translation>
    </message>
    <message>
        <source>What the job is for, and whom to ask</source>
        <translation>Wozu der Auftrag dient und wen man fragen kann</translation>
    </message>
    <message>
        <source>What the job is for</source>
        <translation>Wozu der Auftrag dient</translation>
    </message>
    <message>
        <source>&amp;Description</source>
        <translation>Be&amp;schreibung</translation>
    </message>
    <message>
        <source>Source Data Source</source>
        <translation>Quelle</translation>
    </message>
    <message>
        <source>Where changes are read. Reading them takes a SYSDBA log-on.</source>
        <translation>Hier werden Änderungen gelesen. Das geht nur mit einer SYSDBA-Anmeldung.</translation>
    </message>
    <message>
        <source>&amp;Source Data Source:</source>
        <translation>&amp;Quelle:</translation>
    </message>
    <message>
        <source>Destination Data Source</source>
        <translation>Ziel</translation>
    </message>
    <message>
        <source>Where changes are written</source>
        <translation>Hierhin werden Änderungen geschrieben</translation>
    </message>
    <message>
        <source>D&amp;estination Data Source:</source>
        <translation>&amp;Ziel:</translation>
    </message>
    <message>
        <source>Minutes from one synchronization to the next. Longer than the longest transaction on the source stays open.</source>
        <translation>Minuten von einer Übertragung zur nächsten. Länger, als die längste Transaktion an der Quelle offen bleibt.</translation>
    </message>
    <message>
        <source>Synchronize Interval in minutes</source>
        <translation>Intervall in Minuten</translation>
    </message>
    <message>
        <source>Synchronize &amp;Interval(minutes):</source>
        <translation>&amp;Intervall (Minuten):</translation>
    </message>
    <message>
        <source>Follow</source>
        <translation>Folgen</translation>
    </message>
    <message>
        <source>What the job follows</source>
        <translation>Wem der Auftrag folgt</translation>
    </message>
    <message>
        <source>&amp;Commits (recommended)</source>
        <translation>&amp;Commits (empfohlen)</translation>
    </message>
    <message>
        <source>Container</source>
        <translation>Container</translation>
    </message>
    <message>
        <source>The pluggable database that the job follows, when its source is the root of a container database</source>
        <translation>Die Pluggable Database, der der Auftrag folgt, wenn seine Quelle die Wurzel einer Container-Datenbank ist</translation>
    </message>
    <message>
        <source>When the source is a root</source>
        <translation>Wenn die Quelle eine Wurzel ist</translation>
    </message>
    <message>
        <source>Co&amp;ntainer:</source>
        <translation>Con&amp;tainer:</translation>
    </message>
    <message>
        <source>&amp;Rows</source>
        <translation>Zei&amp;len</translation>
    </message>
    <message>
        <source>Can be changed while the job is stopped only</source>
        <translation>Kann nur geändert werden, solange der Auftrag gestoppt ist</translation>
    </message>
    <message>
        <source>Properties of %1</source>
        <translation>Eigenschaften von %1</translation>
    </message>
    <message>
        <source>Obligatory field can not be empty</source>
        <translation>Ein Pflichtfeld darf nicht leer sein</translation>
    </message>
    <message>
        <source>The description cannot be kept exactly so: its file breaks very long lines, drops empty lines and blanks around lines, and makes tabs blanks.

Keep it like that?</source>
        <translation>Die Beschreibung kann nicht genau so behalten werden: Ihre Datei bricht sehr lange Zeilen um, lässt leere Zeilen und Leerzeichen am Rand weg und macht Tabulatoren zu Leerzeichen.

So behalten?</translation>
    </message>
</context>
<context>
    <name>quillmere::TJobMgrForm</name>
    <message>
        <source>Jobs manager: Design, mangage and monitor</source>
        <translation>Aufträge: entwerfen, verwalten und überwachen</translation>
    </message>
    <message>
        <source>No jobs yet. A job copies the changes of one data source to another: register both with OpenDbMgr in the Database menu, then choose New in the Job menu</source>
        <translation>Noch keine Aufträge. Ein Auftrag überträgt die Änderungen einer Datenquelle in eine andere: beide unter „Datenquellen“ im Menü „Datenbank“ registrieren, dann im Menü „Auftrag“ „Neu“ wählen</translation>
    </message>
    <message>
        <source>No jobs yet. Choose New in the Job menu to make one</source>
        <translation>Noch keine Aufträge. „Neu“ im Menü „Auftrag“ legt einen an</translation>
    </message>
    <message>
        <source>The tables have not been read from the source yet: select the job and choose Refresh</source>
        <translation>Die Tabellen sind noch nicht von der Quelle gelesen: den Auftrag auswählen und „Neu lesen“ wählen</translation>
    </message>
    <message>
        <source>No table is excluded</source>
        <translation>Keine Tabelle ist ausgeschlossen</translation>
    </message>
    <message>
        <source>No table is included: choose them under Exclude</source>
        <translation>Keine Tabelle ist einbezogen: sie werden unter „Ausgeschlossen“ gewählt</translation>
    </message>
    <message>
        <source>All Jobs</source>
        <translation>Alle Aufträge</translation>
    </message>
    <message>
        <source>Jobs and tables</source>
        <translation>Aufträge und Tabellen</translation>
    </message>
    <message>
        <source>%1. Enter or a double click goes to the job</source>
        <translation>%1. Eingabetaste oder Doppelklick geht zum Auftrag</translation>
    </message>
    <message numerus="yes">
        <source>%Ln job(s)</source>
        <translation>
            <numerusform>%Ln Auftrag</numerusform>
            <numerusform>%Ln Aufträge</numerusform>
        </translation>
    </message>
    <message>
        <source>Follows %1. %2</source>
        <translation>Folgt: %1. %2</translation>
    </message>
    <message numerus="yes">
        <source>%Ln table(s)</source>
        <translation>
            <numerusform>%Ln Tabelle</numerusform>
            <numerusform>%Ln Tabellen</numerusform>
        </translation>
    </message>
    <message>
        <source>The jobs could not be saved: %1

Close all the same?</source>
        <translation>Die Aufträge konnten nicht gespeichert werden: %1

Trotzdem schließen?</translation>
    </message>
    <message>
        <source>New job</source>
        <translation>Neuer Auftrag</translation>
    </message>
    <message>
        <source>Change of a job</source>
        <translation>Änderung eines Auftrags</translation>
    </message>
    <message>
        <source>Delete %1?</source>
        <translation>%1 löschen?</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>Neu lesen</translation>
    </message>
    <message>
        <source>Have the selected tables been compared? Their mark is taken away.</source>
        <translation>Sind die ausgewählten Tabellen verglichen? Ihre Kennzeichnung wird entfernt.</translation>
    </message>
    <message numerus="yes">
        <source>%1 was at work when the program ended, and is Paused with %Ln statement(s) left. Continue it with Run</source>
        <translation>
            <numerusform>%1 war bei Programmende an der Arbeit und ist pausiert, %Ln Anweisung steht aus. Fortsetzen mit „Starten“</numerusform>
            <numerusform>%1 war bei Programmende an der Arbeit und ist pausiert, %Ln Anweisungen stehen aus. Fortsetzen mit „Starten“</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>and %Ln more</source>
        <translation>
            <numerusform>und %Ln weiterer</numerusform>
            <numerusform>und %Ln weitere</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quillmere::TMainForm</name>
    <message>
        <source>Working folder %1</source>
        <translation>Arbeitsordner %1</translation>
    </message>
    <message>
        <source>Job Explorer</source>
        <translation>Aufträge</translation>
    </message>
    <message>
        <source>Jobs manager: Design, mangage and monitor</source>
        <translation>Aufträge: entwerfen, verwalten und überwachen</translation>
    </message>
    <message>
        <source>Database</source>
        <translation>Datenbank</translation>
    </message>
    <message>
        <source>Databse manager: table, key and index management.</source>
        <translation>Datenbanken: Tabellen, Schlüssel und Indizes verwalten.</translation>
    </message>
    <message>
        <source> &amp;ShowLog</source>
        <translation> &amp;Meldungen zeigen</translation>
    </message>
    <message>
        <source>error.log cannot be written. Lost: %1</source>
        <translation>error.log kann nicht geschrieben werden. Verloren: %1</translation>
    </message>
    <message>
        <source>error.log in the working folder cannot be written: messages are lost until it can be. Make room, or make the file writable.

The first one: %1</source>
        <translation>error.log im Arbeitsordner kann nicht geschrieben werden: Bis dahin gehen Meldungen verloren. Bitte Platz schaffen oder die Datei schreibbar machen.

Die erste: %1</translation>
    </message>
    <message>
        <source> &amp;Help</source>
        <translation> &amp;Hilfe</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source> &amp;About</source>
        <translation> Ü&amp;ber</translation>
    </message>
    <message>
        <source>&amp;About</source>
        <translation>Ü&amp;ber</translation>
    </message>
    <message>
        <source>&amp;Job </source>
        <translation>&amp;Auftrag </translation>
    </message>
    <message>
        <source>&amp;Exit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>&amp;Database</source>
        <translation>&amp;Datenbank</translation>
    </message>
    <message>
        <source>&amp;Options</source>
        <translation>&amp;Optionen</translation>
    </message>
    <message>
        <source>Shows or hides the message list</source>
        <translation>Zeigt oder verbirgt die Meldungsliste</translation>
    </message>
    <message>
        <source> S&amp;ettings ...</source>
        <translation> &amp;Einstellungen ...</translation>
    </message>
    <message>
        <source> &amp;Debug messages</source>
        <translation> &amp;Debug-Meldungen</translation>
    </message>
    <message>
        <source> S&amp;tatement trace</source>
        <translation> An&amp;weisungen protokollieren</translation>
    </message>
    <message>
        <source> &amp;Registry messages</source>
        <translation> Meldungen der &amp;Registrierung</translation>
    </message>
    <message>
        <source> &amp;Appearance</source>
        <translation> Er&amp;scheinungsbild</translation>
    </message>
    <message>
        <source>As the &amp;system</source>
        <translation>Wie das &amp;System</translation>
    </message>
    <message>
        <source>&amp;Light</source>
        <translation>&amp;Hell</translation>
    </message>
    <message>
        <source>&amp;Dark</source>
        <translation>&amp;Dunkel</translation>
    </message>
    <message>
        <source>&amp;Skin</source>
        <translation>&amp;Skin</translation>
    </message>
    <message>
        <source>&amp;Basic</source>
        <translation>&amp;Einfach</translation>
    </message>
    <message>
        <source>&amp;Advanced</source>
        <translation>Er&amp;weitert</translation>
    </message>
    <message>
        <source>&amp;Default</source>
        <translation>&amp;Standard</translation>
    </message>
    <message>
        <source>%1. The choice holds until the program ends</source>
        <translation>%1. Die Wahl gilt, bis das Programm endet</translation>
    </message>
    <message>
        <source>The skin is not there. Looked for: %1</source>
        <translation>Der Skin ist nicht vorhanden. Gesucht wurde: %1</translation>
    </message>
    <message>
        <source>Load a skin</source>
        <translation>Einen Skin laden</translation>
    </message>
    <message>
        <source>Skins (*.qss)</source>
        <translation>Skins (*.qss)</translation>
    </message>
    <message>
        <source>The manual is not there. Looked for: %1</source>
        <translation>Das Handbuch ist nicht vorhanden. Gesucht wurde: %1</translation>
    </message>
    <message>
        <source>The system has no program to open %1</source>
        <translation>Das System hat kein Programm, um %1 zu öffnen</translation>
    </message>
    <message>
        <source>The jobs could not be saved: %1</source>
        <translation>Die Aufträge konnten nicht gespeichert werden: %1</translation>
    </message>
    <message>
        <source>Sandbox databases</source>
        <translation>Sandbox-Datenbanken</translation>
    </message>
    <message>
        <source>&amp;Hide</source>
        <translation>&amp;Verbergen</translation>
    </message>
    <message>
        <source>this desktop has no tray</source>
        <translation>dieser Desktop hat keinen Infobereich</translation>
    </message>
</context>
<context>
    <name>quillmere::TMigrateForm</name>
    <message>
        <source>Drop Target</source>
        <translation>Ziel löschen</translation>
    </message>
    <message>
        <source>Prompt Before Drop</source>
        <translation>Vor dem Löschen fragen</translation>
    </message>
    <message>
        <source>Include Primary Key</source>
        <translation>Mit Primärschlüssel</translation>
    </message>
    <message>
        <source>Include Index</source>
        <translation>Mit Index</translation>
    </message>
    <message>
        <source>Choose a data source</source>
        <translation>Datenquelle wählen</translation>
    </message>
    <message>
        <source>Migrate Table/Key/Index To Another DB</source>
        <translation>Tabelle/Schlüssel/Index in eine andere Datenbank migrieren</translation>
    </message>
    <message>
        <source>Migrate Item</source>
        <translation>Objekt</translation>
    </message>
    <message>
        <source>Owner</source>
        <translation>Besitzer</translation>
    </message>
    <message>
        <source>E&amp;xecute</source>
        <translation>Ausfüh&amp;ren</translation>
    </message>
    <message>
        <source>Creates all of the list on the chosen data source</source>
        <translation>Legt alles in der Liste auf der gewählten Datenquelle an</translation>
    </message>
    <message>
        <source>Source Database</source>
        <translation>Quelldatenbank</translation>
    </message>
    <message>
        <source>Data Source:</source>
        <translation>Datenquelle:</translation>
    </message>
    <message>
        <source>The data source on which the objects are created</source>
        <translation>Die Datenquelle, auf der die Objekte angelegt werden</translation>
    </message>
    <message>
        <source>Target Database</source>
        <translation>Zieldatenbank</translation>
    </message>
    <message>
        <source>&amp;Data Source:</source>
        <translation>&amp;Datenquelle:</translation>
    </message>
    <message>
        <source>Control Parameter</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Choose the data source to migrate to first</source>
        <translation>Bitte zuerst die Zieldatenquelle wählen</translation>
    </message>
    <message>
        <source>%1. Migrate to it all the same?</source>
        <translation>%1. Trotzdem dorthin migrieren?</translation>
    </message>
    <message>
        <source>Migrate</source>
        <translation>Migrieren</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>Neu lesen</translation>
    </message>
</context>
<context>
    <name>quillmere::TRenameForm</name>
    <message>
        <source>Change Name Of Table/Index/Key</source>
        <translation>Name von Tabelle/Index/Schlüssel ändern</translation>
    </message>
    <message>
        <source>change name of a Table/Index/Key</source>
        <translation>Tabelle/Index/Schlüssel umbenennen</translation>
    </message>
    <message>
        <source>Owner</source>
        <translation>Besitzer</translation>
    </message>
    <message>
        <source>Table</source>
        <translation>Tabelle</translation>
    </message>
    <message>
        <source>Current Name</source>
        <translation>Jetziger Name</translation>
    </message>
    <message>
        <source>&amp;New Name</source>
        <translation>&amp;Neuer Name</translation>
    </message>
    <message>
        <source>The name without an owner</source>
        <translation>Der Name ohne Besitzer</translation>
    </message>
    <message>
        <source>Sent to the server as it is typed; the server judges it</source>
        <translation>Wird so an den Server geschickt, wie er eingegeben ist; der Server beurteilt ihn</translation>
    </message>
    <message>
        <source>E&amp;xecute</source>
        <translation>Ausfüh&amp;ren</translation>
    </message>
    <message>
        <source>Changes the name</source>
        <translation>Ändert den Namen</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Umbenennen</translation>
    </message>
</context>
<context>
    <name>quillmere::Tray</name>
    <message>
        <source>&amp;Show the window</source>
        <translation>Fenster &amp;zeigen</translation>
    </message>
    <message>
        <source>&amp;Exit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>Quillmere - %1</source>
        <translation>Quillmere - %1</translation>
    </message>
    <message>
        <source>%1: %2, was %3</source>
        <comment>a job, its health now and before</comment>
        <translation>%1: %2, vorher %3</translation>
    </message>
    <message numerus="yes">
        <source>and %Ln more</source>
        <translation>
            <numerusform>und %Ln weiterer</numerusform>
            <numerusform>und %Ln weitere</numerusform>
        </translation>
    </message>
</context>
</TS>
