<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>HealthTexts</name>
    <message numerus="yes">
        <source>%Ln job(s)</source>
        <translation>
            <numerusform>%Ln job</numerusform>
            <numerusform>%Ln jobs</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>JobQuestions</name>
    <message numerus="yes">
        <source>and %Ln more</source>
        <translation>
            <numerusform>and %Ln more</numerusform>
            <numerusform>and %Ln more</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ListTexts</name>
    <message numerus="yes">
        <source>%Ln data source(s)</source>
        <translation>
            <numerusform>%Ln data source</numerusform>
            <numerusform>%Ln data sources</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln primary key(s)</source>
        <translation>
            <numerusform>%Ln primary key</numerusform>
            <numerusform>%Ln primary keys</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln index(es)</source>
        <translation>
            <numerusform>%Ln index</numerusform>
            <numerusform>%Ln indexes</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln table(s)</source>
        <translation>
            <numerusform>%Ln table</numerusform>
            <numerusform>%Ln tables</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>LoginAdvice</name>
    <message numerus="yes">
        <source>%1 and %Ln more</source>
        <translation>
            <numerusform>%1 and %Ln more</numerusform>
            <numerusform>%1 and %Ln more</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>SchemaTexts</name>
    <message numerus="yes">
        <source>%Ln table(s) of %1 will be dropped with all rows.</source>
        <translation>
            <numerusform>%Ln table of %1 will be dropped with all its rows.</numerusform>
            <numerusform>%Ln tables of %1 will be dropped with all their rows.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln primary key(s) of %1 will be dropped, and with them every foreign key that references them, whoever owns it. The rows stay.</source>
        <translation>
            <numerusform>%Ln primary key of %1 will be dropped, and with it every foreign key that references it, whoever owns it. The rows stay.</numerusform>
            <numerusform>%Ln primary keys of %1 will be dropped, and with them every foreign key that references them, whoever owns it. The rows stay.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln index(es) of %1 will be dropped. The rows stay.</source>
        <translation>
            <numerusform>%Ln index of %1 will be dropped. The rows stay.</numerusform>
            <numerusform>%Ln indexes of %1 will be dropped. The rows stay.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Foreign keys of other tables that reference them are dropped, too.</source>
        <translation>
            <numerusform>Foreign keys of other tables that reference it are dropped, too.</numerusform>
            <numerusform>Foreign keys of other tables that reference them are dropped, too.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>and %Ln more</source>
        <translation>
            <numerusform>and %Ln more</numerusform>
            <numerusform>and %Ln more</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quillmere::MessagePanel</name>
    <message numerus="yes">
        <source>%Ln unread error(s)</source>
        <translation>
            <numerusform>%Ln unread error</numerusform>
            <numerusform>%Ln unread errors</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quillmere::NowPage</name>
    <message numerus="yes">
        <source>%Ln change(s)</source>
        <translation>
            <numerusform>%Ln change</numerusform>
            <numerusform>%Ln changes</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln more</source>
        <translation>
            <numerusform>%Ln more</numerusform>
            <numerusform>%Ln more</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quillmere::ProblemPage</name>
    <message numerus="yes">
        <source>%Ln time(s)</source>
        <translation>
            <numerusform>%Ln time</numerusform>
            <numerusform>%Ln times</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quillmere::TFilterForm</name>
    <message numerus="yes">
        <source>%Ln table(s)</source>
        <translation>
            <numerusform>%Ln table</numerusform>
            <numerusform>%Ln tables</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quillmere::TJobMgrForm</name>
    <message numerus="yes">
        <source>%Ln job(s)</source>
        <translation>
            <numerusform>%Ln job</numerusform>
            <numerusform>%Ln jobs</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln table(s)</source>
        <translation>
            <numerusform>%Ln table</numerusform>
            <numerusform>%Ln tables</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 was at work when the program ended, and is Paused with %Ln statement(s) left. Continue it with Run</source>
        <translation>
            <numerusform>%1 was at work when the program ended, and is Paused with %Ln statement left. Continue it with Run</numerusform>
            <numerusform>%1 was at work when the program ended, and is Paused with %Ln statements left. Continue it with Run</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>and %Ln more</source>
        <translation>
            <numerusform>and %Ln more</numerusform>
            <numerusform>and %Ln more</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quillmere::Tray</name>
    <message numerus="yes">
        <source>and %Ln more</source>
        <translation>
            <numerusform>and %Ln more</numerusform>
            <numerusform>and %Ln more</numerusform>
        </translation>
    </message>
</context>
</TS>
