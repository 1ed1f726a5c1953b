<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US">
<context>
    <name>QObject</name>
    <message>
        <source>__</source>
        <comment>VaskSettings</comment>
        <translation>АВЕКМНОРСТУХ</translation>
    </message>
    <message>
        <source>_</source>
        <comment>VaskSettings</comment>
        <translation>ABEKMHOPCTYX</translation>
    </message>
</context>
</TS>
