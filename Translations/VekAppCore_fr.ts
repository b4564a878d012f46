<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR">
<context>
    <name></name>
    <message>
        <source>Yes</source>
        <translation>Oui</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Non</translation>
    </message>
</context>
<context>
    <name>CmdBase</name>
    <message>
        <source>An unknown error occurred</source>
        <translation>Une erreur inconnue est survenue</translation>
    </message>
</context>
<context>
    <name>ConsentPanel</name>
    <message>
        <source>Send usage statistics</source>
        <translation>Envoyer des statistiques d’utilisation</translation>
    </message>
    <message>
        <source>What has been sent, as it went (the newest first, 50 at most):</source>
        <translation>Ce qui a été envoyé, tel quel (le plus récent d’abord, 50 au plus)&#xa0;:</translation>
    </message>
    <message>
        <source>The settings of this computer decide.</source>
        <translation>Les réglages de cet ordinateur en décident.</translation>
    </message>
    <message>
        <source>With your consent, this program tells its makers how it is used: which pages and dialogs are opened, which commands are used, when, and how long they take. With it go the version, edition and language of the program, your country, the size of the screen, the kind of processor and graphics card, the size of the memory, and a random number that stands for this installation. It sends no files and no measurements. You may change your mind at any time: what has not been sent by then is dropped.</source>
        <translation>Avec votre accord, ce programme indique à ses auteurs comment il est utilisé&#xa0;: quelles pages et quelles boîtes de dialogue sont ouvertes, quelles commandes sont utilisées, quand et combien de temps elles prennent. S’y ajoutent la version, l’édition et la langue du programme, votre pays, la taille de l’écran, le type de processeur et de carte graphique, la taille de la mémoire, et un nombre aléatoire qui désigne cette installation. Aucun fichier ni aucune mesure n’est envoyé. Vous pouvez changer d’avis à tout moment&#xa0;: ce qui n’a pas encore été envoyé est abandonné.</translation>
    </message>
</context>
<context>
    <name>LogPanel</name>
    <message>
        <source>Error</source>
        <translation>Erreur</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Avertissement</translation>
    </message>
    <message>
        <source>Info</source>
        <translation>Information</translation>
    </message>
    <message>
        <source>Debug</source>
        <translation>Débogage</translation>
    </message>
    <message>
        <source>Trace</source>
        <translation>Trace</translation>
    </message>
    <message>
        <source>Shows lines of this level and more important ones</source>
        <translation>Affiche les lignes de ce niveau et des niveaux plus importants</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Rechercher</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Effacer</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Copier</translation>
    </message>
</context>
<context>
    <name>NotificationBar</name>
    <message>
        <source>%1 more</source>
        <translation>%1 de plus</translation>
    </message>
    <message>
        <source>Details</source>
        <translation>Détails</translation>
    </message>
    <message>
        <source>Close this message</source>
        <translation>Fermer ce message</translation>
    </message>
</context>
<context>
    <name>NumberLineEdit</name>
    <message>
        <source>&quot;%1&quot; is not a number.</source>
        <translation>«&#xa0;%1&#xa0;» n’est pas un nombre.</translation>
    </message>
    <message>
        <source>A number from %1 to %2 is expected.</source>
        <translation>Un nombre de %1 à %2 est attendu.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not a number with one of the units %2.</source>
        <translation>«&#xa0;%1&#xa0;» n’est pas un nombre avec une des unités %2.</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>ERROR ! an exception has interrupted the treatment.</source>
        <translation>ERREUR&#x202f;! une exception a interrompu le traitement.</translation>
    </message>
    <message>
        <source>A general exception has been caught.</source>
        <translation>Une exception générale a été interceptée.</translation>
    </message>
    <message>
        <source>%1 %2 (source: %3)</source>
        <translation>%1 %2 (source&#xa0;: %3)</translation>
    </message>
    <message>
        <source>NOT ENOUGH MEMORY!</source>
        <translation>MÉMOIRE INSUFFISANTE&#x202f;!</translation>
    </message>
    <message>
        <source>ESC: the computation is canceled.</source>
        <translation>ÉCHAP&#xa0;: le calcul est annulé.</translation>
    </message>
    <message>
        <source>Not enough memory.</source>
        <translation>Mémoire insuffisante.</translation>
    </message>
</context>
<context>
    <name>StringUtility</name>
    <message>
        <source>: </source>
        <comment>Must be translated with the correct spacing according to the language (ex: &quot; : &quot; in French</comment>
        <translation>&#xa0;: </translation>
    </message>
    <message>
        <source>; </source>
        <comment>Must be translated with the correct spacing according to the language (ex: &quot; ; &quot; in French</comment>
        <translation>&#x202f;; </translation>
    </message>
</context>
<context>
    <name>TaskProgressWidget</name>
    <message>
        <source>%1 s left</source>
        <translation>Encore %1&#xa0;s</translation>
    </message>
    <message>
        <source>%1 min left</source>
        <translation>Encore %1&#xa0;min</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
</context>
</TS>
