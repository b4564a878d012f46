<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR">
<context>
    <name>InspectionDeskPly</name>
    <message>
        <source>this is not a PLY file</source>
        <translation>ce n’est pas un fichier PLY</translation>
    </message>
    <message>
        <source>this header line is not understood: %1</source>
        <translation>cette ligne d’en-tête n’est pas comprise&#xa0;: %1</translation>
    </message>
    <message>
        <source>the header has no end</source>
        <translation>l’en-tête n’a pas de fin</translation>
    </message>
    <message>
        <source>a vertex needs x, y and z, each once</source>
        <translation>un sommet a besoin de x, y et z, une fois chacun</translation>
    </message>
    <message>
        <source>%1 %2 is cut off or has wrong numbers</source>
        <translation>%1 %2 est tronqué ou contient des nombres erronés</translation>
    </message>
    <message>
        <source>there are more data than its header says</source>
        <translation>il y a plus de données que l’en-tête n’en annonce</translation>
    </message>
</context>
</TS>
