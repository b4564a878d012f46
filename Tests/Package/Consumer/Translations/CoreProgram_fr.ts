<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR">
<context>
    <name>CoreProgram</name>
    <message>
        <source>Hello from a plug-in</source>
        <translation>Bonjour d’un greffon</translation>
    </message>
</context>
</TS>
