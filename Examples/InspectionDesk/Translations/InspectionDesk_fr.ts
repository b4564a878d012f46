<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR">
<context>
    <name>InspectionDesk</name>
    <message>
        <source>The settings are damaged: %1</source>
        <translation>Les réglages sont endommagés&#xa0;: %1</translation>
    </message>
    <message>
        <source>The settings cannot be read or written: %1</source>
        <translation>Les réglages ne peuvent être ni lus ni écrits&#xa0;: %1</translation>
    </message>
    <message>
        <source>Changes of the settings cannot be kept: %1</source>
        <translation>Les modifications des réglages ne peuvent pas être conservées&#xa0;: %1</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Réglages</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1&#xa0;: %2</translation>
    </message>
    <message>
        <source>there is not enough memory for it</source>
        <translation>il n’y a pas assez de mémoire pour ce fichier</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Accueil</translation>
    </message>
    <message>
        <source>Figures</source>
        <translation>Valeurs</translation>
    </message>
    <message>
        <source>Log</source>
        <translation>Journal</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Fichier</translation>
    </message>
    <message>
        <source>&amp;Open...</source>
        <translation>&amp;Ouvrir…</translation>
    </message>
    <message>
        <source>Open &amp;recent</source>
        <translation>Ouvrir un fichier &amp;récent</translation>
    </message>
    <message>
        <source>Save &amp;as...</source>
        <translation>Enregistrer &amp;sous…</translation>
    </message>
    <message>
        <source>Se&amp;ttings...</source>
        <translation>Ré&amp;glages…</translation>
    </message>
    <message>
        <source>&amp;Usage statistics...</source>
        <translation>S&amp;tatistiques d’utilisation…</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Quitter</translation>
    </message>
    <message>
        <source>Version %1 is available</source>
        <translation>La version %1 est disponible</translation>
    </message>
    <message>
        <source>Usage statistics</source>
        <translation>Statistiques d’utilisation</translation>
    </message>
    <message>
        <source>None yet</source>
        <translation>Aucun pour l’instant</translation>
    </message>
    <message>
        <source>Open point clouds, documents and reports</source>
        <translation>Ouvrir des nuages de points, des documents et des rapports</translation>
    </message>
    <message>
        <source>Files to open (*.%1)</source>
        <translation>Fichiers à ouvrir (*.%1)</translation>
    </message>
    <message>
        <source>Reports (*.%1)</source>
        <translation>Rapports (*.%1)</translation>
    </message>
    <message>
        <source>Documents (*.%1)</source>
        <translation>Documents (*.%1)</translation>
    </message>
    <message>
        <source>Save the result</source>
        <translation>Enregistrer le résultat</translation>
    </message>
    <message>
        <source>Fitting %1</source>
        <translation>Ajustement de %1</translation>
    </message>
    <message>
        <source>Reading %1</source>
        <translation>Lecture de %1</translation>
    </message>
    <message>
        <source>%1: a report has no points to save; save it as .%2</source>
        <translation>%1&#xa0;: un rapport n’a pas de points à enregistrer&#x202f;; enregistrez-le en .%2</translation>
    </message>
    <message>
        <source>%1: saved</source>
        <translation>%1&#xa0;: enregistré</translation>
    </message>
    <message>
        <source>Saving %1</source>
        <translation>Enregistrement de %1</translation>
    </message>
    <message>
        <source>%1: opened</source>
        <translation>%1&#xa0;: ouvert</translation>
    </message>
    <message>
        <source>%1: %2 points read, fitted and drawn in %3 s</source>
        <translation>%1&#xa0;: %2 points lus, ajustés et dessinés en %3&#xa0;s</translation>
    </message>
    <message>
        <source>Nothing inspected yet</source>
        <translation>Rien n’a encore été contrôlé</translation>
    </message>
    <message>
        <source>A document is still being saved</source>
        <translation>Un document est encore en cours d’enregistrement</translation>
    </message>
    <message>
        <source>Drop a point cloud here, or choose File &gt; Open</source>
        <translation>Déposez un nuage de points ici, ou choisissez Fichier &gt; Ouvrir</translation>
    </message>
    <message>
        <source>A report: figures without points</source>
        <translation>Un rapport&#xa0;: des valeurs sans points</translation>
    </message>
    <message>
        <source>Deviation [%1]</source>
        <translation>Écart [%1]</translation>
    </message>
    <message>
        <source>a document cannot hold as many points</source>
        <translation>un document ne peut pas contenir autant de points</translation>
    </message>
    <message>
        <source>this is no document, or one of a newer version</source>
        <translation>ce n’est pas un document, ou il est d’une version plus récente</translation>
    </message>
    <message>
        <source>the document is cut off or damaged</source>
        <translation>le document est tronqué ou endommagé</translation>
    </message>
    <message>
        <source>this is no document of an inspection</source>
        <translation>ce n’est pas le document d’un contrôle</translation>
    </message>
    <message>
        <source>the document has no valid value &quot;%1&quot;</source>
        <translation>le document n’a pas de valeur valide «&#xa0;%1&#xa0;»</translation>
    </message>
    <message>
        <source>the document has values of a wrong size</source>
        <translation>le document contient des valeurs d’une taille erronée</translation>
    </message>
    <message>
        <source>the document has no valid value &quot;Unit&quot;</source>
        <translation>le document n’a pas de valeur valide «&#xa0;Unit&#xa0;»</translation>
    </message>
    <message>
        <source>the document has points that do not span a plane</source>
        <translation>le document contient des points qui n’engendrent pas un plan</translation>
    </message>
    <message>
        <source>there is no such file</source>
        <translation>ce fichier n’existe pas</translation>
    </message>
    <message>
        <source>Points</source>
        <translation>Points</translation>
    </message>
    <message>
        <source>Flatness</source>
        <translation>Planéité</translation>
    </message>
    <message>
        <source>Standard deviation</source>
        <translation>Écart type</translation>
    </message>
    <message>
        <source>Highest deviation</source>
        <translation>Écart maximal</translation>
    </message>
    <message>
        <source>Lowest deviation</source>
        <translation>Écart minimal</translation>
    </message>
    <message>
        <source>it cannot be written</source>
        <translation>il ne peut pas être écrit</translation>
    </message>
    <message>
        <source>line %1: the XML is damaged</source>
        <translation>ligne %1&#xa0;: le XML est endommagé</translation>
    </message>
    <message>
        <source>it cannot be read or is no XML text</source>
        <translation>il ne peut pas être lu ou n’est pas un texte XML</translation>
    </message>
    <message>
        <source>this is a report of a newer version</source>
        <translation>ce rapport est d’une version plus récente</translation>
    </message>
    <message>
        <source>The points do not span a plane (%1 points)</source>
        <translation>Les points n’engendrent pas un plan (%1 points)</translation>
    </message>
    <message>
        <source>line %1: expected three numbers</source>
        <translation>ligne %1&#xa0;: trois nombres étaient attendus</translation>
    </message>
    <message>
        <source>files of this kind cannot be read</source>
        <translation>les fichiers de ce type ne peuvent pas être lus</translation>
    </message>
    <message>
        <source>there are no points in it</source>
        <translation>il ne contient aucun point</translation>
    </message>
    <message>
        <source>The system&apos;s</source>
        <translation>Celle du système</translation>
    </message>
    <message>
        <source>The one that suits</source>
        <translation>Celle qui convient</translation>
    </message>
    <message>
        <source>A length with its unit; 0 for the largest deviation</source>
        <translation>Une longueur avec son unité&#x202f;; 0 pour le plus grand écart</translation>
    </message>
    <message>
        <source>Open where it was closed</source>
        <translation>L’ouvrir là où elle a été fermée</translation>
    </message>
    <message>
        <source>Forget the list (%1)</source>
        <translation>Oublier la liste (%1)</translation>
    </message>
    <message>
        <source>&amp;Language</source>
        <translation>&amp;Langue</translation>
    </message>
    <message>
        <source>&amp;Unit of figures</source>
        <translation>&amp;Unité des valeurs</translation>
    </message>
    <message>
        <source>Colours &amp;end at</source>
        <translation>Les couleurs s’&amp;arrêtent à</translation>
    </message>
    <message>
        <source>Colour &amp;above the plane</source>
        <translation>Couleur au-de&amp;ssus du plan</translation>
    </message>
    <message>
        <source>Colour &amp;below the plane</source>
        <translation>Couleur au-&amp;dessous du plan</translation>
    </message>
    <message>
        <source>Window</source>
        <translation>Fenêtre</translation>
    </message>
    <message>
        <source>Recent files</source>
        <translation>Fichiers récents</translation>
    </message>
    <message>
        <source>it cannot be written (%1)</source>
        <translation>il ne peut pas être écrit (%1)</translation>
    </message>
    <message>
        <source>it cannot be read (%1)</source>
        <translation>il ne peut pas être lu (%1)</translation>
    </message>
    <message>
        <source>this is no valid report (%1)</source>
        <translation>ce n’est pas un rapport valide (%1)</translation>
    </message>
</context>
</TS>
