<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR">
<context>
    <name>Gauge</name>
    <message>
        <source>%1 cannot be read</source>
        <translation>%1 ne peut pas être lu</translation>
    </message>
    <message>
        <source>Line %1 is no length</source>
        <translation>La ligne %1 n’est pas une longueur</translation>
    </message>
    <message>
        <source>Open...</source>
        <translation>Ouvrir…</translation>
    </message>
    <message>
        <source>Save as XML...</source>
        <translation>Enregistrer en XML…</translation>
    </message>
    <message>
        <source>Log</source>
        <translation>Journal</translation>
    </message>
    <message>
        <source>What is longer is too long</source>
        <translation>Au-delà, c’est trop long</translation>
    </message>
    <message>
        <source>Reading %1</source>
        <translation>Lecture de %1</translation>
    </message>
    <message>
        <source>%1 cannot be written</source>
        <translation>%1 ne peut pas être écrit</translation>
    </message>
    <message>
        <source>%1 is too long</source>
        <translation>%1 est trop long</translation>
    </message>
</context>
</TS>
