<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR">
<context>
    <name>GaugeCsv</name>
    <message>
        <source>No length: %1</source>
        <translation>Pas une longueur&#xa0;: %1</translation>
    </message>
</context>
</TS>
