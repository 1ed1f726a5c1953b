<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- Every kind of entry once, as a small seed of the target "catalogue". -->
<TS version="2.1" language="ru_RU">
<context>
    <name>ArchiveWidget</name>
    <message numerus="yes">
        <source>%n row(s)</source>
        <translation>
            <numerusform>%n строка</numerusform>
            <numerusform>%n строки</numerusform>
            <numerusform>%n строк</numerusform>
        </translation>
    </message>
    <message>
        <source>Cancel</source>
        <comment>comment</comment>
        <translation>Отменить</translation>
    </message>
</context>
<context>
    <name>ScanModel</name>
    <message>
        <source>Number</source>
        <translation>Номер</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>__</source>
        <comment>VaskSettings</comment>
        <translation>АВЕКМНОРСТУХ</translation>
    </message>
</context>
</TS>
