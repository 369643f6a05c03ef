<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR" sourcelanguage="en_GB">
<context>
    <name>Actions</name>
    <message>
        <source>&amp;Kilometres, metres</source>
        <translation>&amp;Kilomètres, mètres</translation>
    </message>
    <message>
        <source>&amp;Nautical miles, metres</source>
        <translation>Milles &amp;nautiques, mètres</translation>
    </message>
    <message>
        <source>&amp;Miles, feet</source>
        <translation>&amp;Miles, pieds</translation>
    </message>
    <message>
        <source>&amp;Open …</source>
        <translation>&amp;Ouvrir…</translation>
    </message>
    <message>
        <source>&amp;Save as …</source>
        <translation>&amp;Enregistrer sous…</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Quitter</translation>
    </message>
    <message>
        <source>&amp;Look for receivers</source>
        <translation>&amp;Chercher les récepteurs</translation>
    </message>
    <message>
        <source>&amp;Download everything</source>
        <translation>&amp;Tout télécharger</translation>
    </message>
    <message>
        <source>Download &amp;waypoints</source>
        <translation>Télécharger les &amp;waypoints</translation>
    </message>
    <message>
        <source>Download &amp;tracks</source>
        <translation>Télécharger les t&amp;races</translation>
    </message>
    <message>
        <source>Download &amp;routes</source>
        <translation>Télécharger les r&amp;outes</translation>
    </message>
    <message>
        <source>&amp;Send to the receiver …</source>
        <translation>&amp;Envoyer au récepteur…</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Annuler</translation>
    </message>
    <message>
        <source>Show &amp;everything on the map</source>
        <translation>&amp;Tout montrer sur la carte</translation>
    </message>
    <message>
        <source>&amp;Background map …</source>
        <translation>&amp;Fond de carte…</translation>
    </message>
    <message>
        <source>&amp;About Marlune</source>
        <translation>À propos de &amp;Marlune</translation>
    </message>
    <message>
        <source>About &amp;Qt</source>
        <translation>À propos de &amp;Qt</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Fichier</translation>
    </message>
    <message>
        <source>&amp;Receiver</source>
        <translation>&amp;Récepteur</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Affichage</translation>
    </message>
    <message>
        <source>&amp;Units</source>
        <translation>&amp;Unités</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>A&amp;ide</translation>
    </message>
    <message>
        <source>Tools</source>
        <translation>Outils</translation>
    </message>
</context>
<context>
    <name>Options</name>
    <message>
        <source>Connect to this receiver: /dev/ttyUSB0, usb, virtual:map162.</source>
        <translation>Se connecter à ce récepteur : /dev/ttyUSB0, usb, virtual:map162.</translation>
    </message>
    <message>
        <source>Its family: GRM, GRM_USB, MGN or MLR.</source>
        <translation>Sa famille : GRM, GRM_USB, MGN ou MLR.</translation>
    </message>
    <message>
        <source>A folder that counts as a mounted drive.</source>
        <translation>Un dossier qui compte comme un lecteur monté.</translation>
    </message>
    <message>
        <source>Speak en or fr.</source>
        <translation>Parler en ou fr.</translation>
    </message>
    <message>
        <source>Exchanges waypoints, routes and tracks with GPS receivers.</source>
        <translation>Échange des waypoints, des routes et des traces avec les récepteurs GPS.</translation>
    </message>
    <message>
        <source>A file to open.</source>
        <translation>Un fichier à ouvrir.</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>GPS files (%1)</source>
        <translation>Fichiers GPS (%1)</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>Tous les fichiers (*)</translation>
    </message>
</context>
<context>
    <name>Receiver</name>
    <message>
        <source>unit on USB</source>
        <translation>appareil USB</translation>
    </message>
    <message>
        <source>unit that is a drive</source>
        <translation>appareil vu comme un lecteur</translation>
    </message>
    <message>
        <source>virtual, to try the program</source>
        <translation>virtuel, pour essayer</translation>
    </message>
    <message>
        <source>serial port</source>
        <translation>port série</translation>
    </message>
</context>
<context>
    <name>RecordModel</name>
    <message>
        <source>begins</source>
        <translation>début</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Nom</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Position</translation>
    </message>
    <message>
        <source>Altitude</source>
        <translation>Altitude</translation>
    </message>
    <message>
        <source>Depth</source>
        <translation>Profondeur</translation>
    </message>
    <message>
        <source>Temperature</source>
        <translation>Température</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Heure</translation>
    </message>
    <message>
        <source>Segment</source>
        <translation>Segment</translation>
    </message>
    <message>
        <source>Symbol</source>
        <translation>Symbole</translation>
    </message>
    <message>
        <source>Comment</source>
        <translation>Commentaire</translation>
    </message>
    <message>
        <source>Link</source>
        <translation>Liaison</translation>
    </message>
    <message>
        <source>Proximity</source>
        <translation>Proximité</translation>
    </message>
    <message>
        <source>Points</source>
        <translation>Points</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>Longueur</translation>
    </message>
    <message>
        <source>Climb</source>
        <translation>Dénivelé</translation>
    </message>
    <message>
        <source>Duration</source>
        <translation>Durée</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Début</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Numéro</translation>
    </message>
</context>
<context>
    <name>Rulers</name>
    <message>
        <source>S</source>
        <translation>S</translation>
    </message>
    <message>
        <source>N</source>
        <translation>N</translation>
    </message>
    <message>
        <source>W</source>
        <translation>O</translation>
    </message>
    <message>
        <source>E</source>
        <translation>E</translation>
    </message>
</context>
<context>
    <name>SendPreview</name>
    <message>
        <source>name</source>
        <translation>nom</translation>
    </message>
    <message numerus="yes">
        <source>%n name(s) change</source>
        <translation>
            <numerusform>%n nom change</numerusform>
            <numerusform>%n noms changent</numerusform>
        </translation>
    </message>
    <message>
        <source>comment</source>
        <translation>commentaire</translation>
    </message>
    <message numerus="yes">
        <source>%n comment(s) are cut or lost</source>
        <translation>
            <numerusform>%n commentaire est coupé ou perdu</numerusform>
            <numerusform>%n commentaires sont coupés ou perdus</numerusform>
        </translation>
    </message>
    <message>
        <source>symbol</source>
        <translation>symbole</translation>
    </message>
    <message numerus="yes">
        <source>%n symbol(s) are lost</source>
        <translation>
            <numerusform>%n symbole est perdu</numerusform>
            <numerusform>%n symboles sont perdus</numerusform>
        </translation>
    </message>
    <message>
        <source>altitude</source>
        <translation>altitude</translation>
    </message>
    <message numerus="yes">
        <source>%n altitude(s) are lost</source>
        <translation>
            <numerusform>%n altitude est perdue</numerusform>
            <numerusform>%n altitudes sont perdues</numerusform>
        </translation>
    </message>
    <message>
        <source>date</source>
        <translation>date</translation>
    </message>
    <message numerus="yes">
        <source>%n date(s) are lost</source>
        <translation>
            <numerusform>%n date est perdue</numerusform>
            <numerusform>%n dates sont perdues</numerusform>
        </translation>
    </message>
    <message>
        <source>depth, temperature, alarm</source>
        <translation>profondeur, température, alarme</translation>
    </message>
    <message numerus="yes">
        <source>%n depth(s), temperatures or alarms are lost</source>
        <translation>
            <numerusform>%n profondeur, température ou alarme est perdue</numerusform>
            <numerusform>%n profondeurs, températures ou alarmes sont perdues</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>marlune::desktop::FileReader</name>
    <message>
        <source>line %1: %2</source>
        <translation>ligne %1 : %2</translation>
    </message>
    <message>
        <source>files of this kind are written only, not read</source>
        <translation>ces fichiers s&apos;écrivent, mais ne se lisent pas</translation>
    </message>
</context>
<context>
    <name>marlune::desktop::LivePanel</name>
    <message>
        <source>Follow on the ma&amp;p</source>
        <translation>Sui&amp;vre sur la carte</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Position</translation>
    </message>
    <message>
        <source>Speed</source>
        <translation>Vitesse</translation>
    </message>
    <message>
        <source>Course</source>
        <translation>Cap</translation>
    </message>
    <message>
        <source>Altitude</source>
        <translation>Altitude</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Heure</translation>
    </message>
    <message>
        <source>Quality</source>
        <translation>Qualité</translation>
    </message>
    <message>
        <source>&amp;Stop receiving positions</source>
        <translation>Arrêter les &amp;positions</translation>
    </message>
    <message>
        <source>&amp;Start receiving positions</source>
        <translation>Recevoir les &amp;positions</translation>
    </message>
    <message>
        <source>two-dimensional</source>
        <translation>deux dimensions</translation>
    </message>
    <message>
        <source>three-dimensional</source>
        <translation>trois dimensions</translation>
    </message>
    <message>
        <source>, within %1</source>
        <translation>, à %1 près</translation>
    </message>
</context>
<context>
    <name>marlune::desktop::LogPanel</name>
    <message>
        <source>Messages</source>
        <translation>Messages</translation>
    </message>
    <message>
        <source>Trace</source>
        <translation>Trace</translation>
    </message>
    <message>
        <source>Write down every &amp;byte on the line</source>
        <translation>Noter chaque octet de la &amp;ligne</translation>
    </message>
    <message>
        <source>&amp;Messages</source>
        <translation>&amp;Messages</translation>
    </message>
    <message>
        <source>Tr&amp;ace</source>
        <translation>Journal d&amp;étaillé</translation>
    </message>
</context>
<context>
    <name>marlune::desktop::MainWindow</name>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>&amp;Live</source>
        <translation>&amp;Suivi</translation>
    </message>
    <message>
        <source>Log</source>
        <translation>Journal</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Avancement</translation>
    </message>
    <message>
        <source>Asking %1 …</source>
        <translation>Interroge %1…</translation>
    </message>
    <message>
        <source>%v of %m</source>
        <translation>%v sur %m</translation>
    </message>
    <message>
        <source>%v</source>
        <translation>%v</translation>
    </message>
    <message>
        <source>Reading %1 …</source>
        <translation>Lit %1…</translation>
    </message>
    <message>
        <source>%1 holds no waypoints, tracks or routes</source>
        <translation>%1 ne contient ni waypoints, ni traces, ni routes</translation>
    </message>
    <message>
        <source>Saved as %1</source>
        <translation>Enregistré sous %1</translation>
    </message>
    <message numerus="yes">
        <source>Saved as %1, without %n that have no position on earth</source>
        <translation>
            <numerusform>Enregistré sous %1, sauf %n sans position terrestre</numerusform>
            <numerusform>Enregistré sous %1, sauf %n sans position terrestre</numerusform>
        </translation>
    </message>
    <message>
        <source>Open a file</source>
        <translation>Ouvrir un fichier</translation>
    </message>
    <message>
        <source>Save as</source>
        <translation>Enregistrer sous</translation>
    </message>
    <message>
        <source>About Marlune</source>
        <translation>À propos de Marlune</translation>
    </message>
    <message>
        <source>Marlune %1 exchanges waypoints, routes and tracks with GPS receivers.

The virtual receivers in the list are part of the program: with them everything can be tried.</source>
        <translation>Marlune %1 échange des waypoints, des routes et des traces avec les récepteurs GPS.

Les récepteurs virtuels de la liste font partie du programme : ils permettent de tout essayer.</translation>
    </message>
</context>
<context>
    <name>marlune::desktop::MapCanvas</name>
    <message>
        <source>Map</source>
        <translation>Carte</translation>
    </message>
    <message>
        <source>%1 waypoints, %2 tracks, %3 routes</source>
        <translation>%1 waypoints, %2 traces, %3 routes</translation>
    </message>
</context>
<context>
    <name>marlune::desktop::MapPanel</name>
    <message>
        <source>Zoom in</source>
        <translation>Agrandir</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Réduire</translation>
    </message>
    <message>
        <source>Show everything</source>
        <translation>Tout montrer</translation>
    </message>
</context>
<context>
    <name>marlune::desktop::NoticeBar</name>
    <message>
        <source>Notice</source>
        <translation>Avis</translation>
    </message>
    <message>
        <source>Close this notice</source>
        <translation>Fermer cet avis</translation>
    </message>
</context>
<context>
    <name>marlune::desktop::ProfileView</name>
    <message>
        <source>Altitude profile</source>
        <translation>Profil d&apos;altitude</translation>
    </message>
    <message>
        <source>The track has no altitudes</source>
        <translation>La trace n&apos;a pas d&apos;altitudes</translation>
    </message>
    <message>
        <source>Choose a track to see its profile</source>
        <translation>Choisissez une trace pour voir son profil</translation>
    </message>
    <message>
        <source>Distance (%1)</source>
        <translation>Distance (%1)</translation>
    </message>
    <message>
        <source>Altitude (%1)</source>
        <translation>Altitude (%1)</translation>
    </message>
    <message>
        <source>%1 long, from %2 to %3</source>
        <translation>longueur %1, de %2 à %3</translation>
    </message>
</context>
<context>
    <name>marlune::desktop::ReceiverFinder</name>
    <message>
        <source>no receiver answers</source>
        <translation>aucun récepteur ne répond</translation>
    </message>
</context>
<context>
    <name>marlune::desktop::ReceiverPanel</name>
    <message>
        <source>Refr&amp;esh</source>
        <translation>Act&amp;ualiser</translation>
    </message>
    <message>
        <source>Connected receiver</source>
        <translation>Récepteur connecté</translation>
    </message>
    <message>
        <source>Protocols of the receiver</source>
        <translation>Protocoles du récepteur</translation>
    </message>
    <message>
        <source>Re&amp;ceivers</source>
        <translation>Ré&amp;cepteurs</translation>
    </message>
    <message>
        <source>Receivers</source>
        <translation>Récepteurs</translation>
    </message>
    <message>
        <source>Ask every port that something is plugged into (F5)</source>
        <translation>Interroger chaque port où quelque chose est branché (F5)</translation>
    </message>
    <message>
        <source>Looking …</source>
        <translation>Cherche…</translation>
    </message>
    <message>
        <source>Co&amp;nnect</source>
        <translation>Co&amp;nnecter</translation>
    </message>
    <message>
        <source>Stop co&amp;nnecting</source>
        <translation>I&amp;nterrompre</translation>
    </message>
    <message>
        <source>Disco&amp;nnect</source>
        <translation>Déco&amp;nnecter</translation>
    </message>
    <message>
        <source>none</source>
        <translation>aucun</translation>
    </message>
</context>
<context>
    <name>marlune::desktop::RecordTabs</name>
    <message>
        <source>Waypoints</source>
        <translation>Waypoints</translation>
    </message>
    <message>
        <source>Tracks</source>
        <translation>Traces</translation>
    </message>
    <message>
        <source>Points of the track</source>
        <translation>Points de la trace</translation>
    </message>
    <message>
        <source>Routes</source>
        <translation>Routes</translation>
    </message>
    <message>
        <source>Points of the route</source>
        <translation>Points de la route</translation>
    </message>
    <message>
        <source>&amp;Waypoints</source>
        <translation>&amp;Waypoints</translation>
    </message>
    <message>
        <source>&amp;Tracks</source>
        <translation>&amp;Traces</translation>
    </message>
    <message>
        <source>R&amp;outes</source>
        <translation>R&amp;outes</translation>
    </message>
</context>
<context>
    <name>marlune::desktop::SendDialog</name>
    <message>
        <source>Send to the receiver</source>
        <translation>Envoyer au récepteur</translation>
    </message>
    <message>
        <source>To %1:</source>
        <translation>À %1 :</translation>
    </message>
    <message>
        <source>What changes or is lost</source>
        <translation>Ce qui change ou se perd</translation>
    </message>
    <message>
        <source>What the receiver keeps</source>
        <translation>Ce que le récepteur garde</translation>
    </message>
    <message>
        <source>&amp;Send</source>
        <translation>&amp;Envoyer</translation>
    </message>
    <message>
        <source>&amp;Waypoints (%1)</source>
        <translation>&amp;Waypoints (%1)</translation>
    </message>
    <message>
        <source>&amp;Tracks (%1)</source>
        <translation>&amp;Traces (%1)</translation>
    </message>
    <message>
        <source>&amp;Routes (%1)</source>
        <translation>&amp;Routes (%1)</translation>
    </message>
    <message>
        <source>The receiver does not take them</source>
        <translation>Le récepteur ne les prend pas</translation>
    </message>
    <message>
        <source>There is nothing that this receiver takes.</source>
        <translation>Il n&apos;y a rien que ce récepteur prenne.</translation>
    </message>
    <message>
        <source>The receiver keeps everything.</source>
        <translation>Le récepteur garde tout.</translation>
    </message>
    <message>
        <source>The receiver did not tell what it understands. What is sent on a guess may spoil what it holds.</source>
        <translation>Le récepteur n&apos;a pas dit ce qu&apos;il comprend. Ce qui est envoyé sur une supposition peut abîmer ce qu&apos;il contient.</translation>
    </message>
</context>
<context>
    <name>marlune::desktop::SendPreview</name>
    <message numerus="yes">
        <source>%n cannot be sent, nor what comes behind</source>
        <translation>
            <numerusform>%n ne peut pas être envoyé, ni ce qui suit</numerusform>
            <numerusform>%n ne peuvent pas être envoyés, ni ce qui suit</numerusform>
        </translation>
    </message>
    <message>
        <source>cannot be sent</source>
        <translation>ne peut pas être envoyé</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Nom</translation>
    </message>
    <message>
        <source>In the receiver</source>
        <translation>Dans le récepteur</translation>
    </message>
    <message>
        <source>Changed or lost</source>
        <translation>Changé ou perdu</translation>
    </message>
</context>
<context>
    <name>marlune::desktop::TileDialog</name>
    <message>
        <source>Background map</source>
        <translation>Fond de carte</translation>
    </message>
    <message>
        <source>Tiles of a map can be drawn below the tracks. They come from the server that you name here, which learns what you look at. Keep to its rules; most want to be named on the map. Without an address nothing is asked from the network.</source>
        <translation>Les tuiles d&apos;une carte peuvent être dessinées sous les traces. Elles viennent du serveur que vous nommez ici, qui apprend ce que vous regardez. Respectez ses règles ; la plupart veulent être nommés sur la carte. Sans adresse, rien n&apos;est demandé au réseau.</translation>
    </message>
    <message>
        <source>© the makers of the map</source>
        <translation>© les auteurs de la carte</translation>
    </message>
    <message>
        <source>&amp;Address:</source>
        <translation>&amp;Adresse :</translation>
    </message>
    <message>
        <source>&amp;Named as:</source>
        <translation>&amp;Mention :</translation>
    </message>
</context>
</TS>
