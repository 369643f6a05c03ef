// Everything that the program says in its own words, but for the help and wrong usage.
#pragma once

#include "words/Speech.h"

namespace marlune::words::phrase {

// Connecting.
inline constexpr Phrase kAsking = {"asking the receiver on %1 to identify itself ...",
                                   "demande au récepteur sur %1 de s'identifier ..."};
inline constexpr Phrase kNotConnected = {"no receiver is connected",
                                         "aucun récepteur n'est connecté"};
inline constexpr Phrase kNotOpened = {"%1 cannot be opened: %2", "%1 ne s'ouvre pas : %2"};
inline constexpr Phrase kNoDeviceOfNumber = {
    "this COM number means no device; --port-device N=PATH gives it one",
    "ce numéro COM ne désigne rien ; --port-device N=CHEMIN lui donne un périphérique"};
inline constexpr Phrase kSilent = {
    "nothing answered on %1: is the receiver on, set to the right protocol, and the cable whole?",
    "rien ne répond sur %1 : le récepteur est-il allumé, réglé sur le bon protocole, et le câble "
    "bon ?"};
inline constexpr Phrase kOtherLanguage = {
    "something answers on %1, but not in the protocol of --mark %2",
    "quelque chose répond sur %1, mais pas dans le protocole de --mark %2"};
inline constexpr Phrase kUnexpectedAnswer = {
    "the receiver on %1 answered with a packet that was not expected (%2)",
    "le récepteur sur %1 a répondu par un paquet inattendu (%2)"};
inline constexpr Phrase kMoreHelp = {"more: docs/troubleshooting.md, \"If it does not work\"",
                                     "voir docs/troubleshooting.md, « If it does not work »"};

// Looking for receivers.
inline constexpr Phrase kAskingFor = {"asking %1 for %2 ...", "demande à %1 pour %2 ..."};
inline constexpr Phrase kNotAsked = {"%1 is not asked: %2", "%1 n'est pas interrogé : %2"};
inline constexpr Phrase kNobody = {"no receiver answers", "aucun récepteur ne répond"};
inline constexpr Phrase kSeveral = {"several receivers answer; choose one of these:",
                                    "plusieurs récepteurs répondent ; choisissez parmi :"};

// Causes and remedies.
inline constexpr Phrase kJoinGroup = {
    "%1 belongs to the group %2; \"sudo usermod -aG %2 $USER\" and a new login let you in",
    "%1 appartient au groupe %2 ; « sudo usermod -aG %2 $USER » et une nouvelle session vous y "
    "donnent accès"};
inline constexpr Phrase kRootOnly = {"%1 belongs to %2 and the group %3, and is closed to others",
                                     "%1 appartient à %2 et au groupe %3, et est fermé aux autres"};
inline constexpr Phrase kHeldBy = {"%1 is in use by %2 (process %3)",
                                   "%1 est utilisé par %2 (processus %3)"};
inline constexpr Phrase kHeldBySomebody = {
    "another program uses %1; \"sudo fuser -v %1\" tells which",
    "un autre programme utilise %1 ; « sudo fuser -v %1 » dit lequel"};
inline constexpr Phrase kNoSuchDevice = {
    "there is no %1: is the cable or adapter plugged in? \"ls /dev/ttyS* /dev/ttyUSB* "
    "/dev/ttyACM*\" lists what is there",
    "%1 n'existe pas : le câble ou l'adaptateur est-il branché ? « ls /dev/ttyS* /dev/ttyUSB* "
    "/dev/ttyACM* » montre ce qui est là"};
inline constexpr Phrase kNoTerminal = {"%1 is no serial port", "%1 n'est pas un port série"};
inline constexpr Phrase kDeadPort = {"no hardware stands behind %1",
                                     "aucun matériel ne se trouve derrière %1"};
inline constexpr Phrase kNoUsbUnit = {
    "no Garmin unit (vendor 091e) is on the bus and no drive is named GARMIN: is the unit plugged "
    "in and on?",
    "aucun appareil Garmin (fabricant 091e) sur le bus, ni aucun lecteur nommé GARMIN : l'appareil "
    "est-il branché et allumé ?"};
inline constexpr Phrase kUsbDenied = {
    "%1 may not be opened by you: install the udev rule 60-marlune.rules into /etc/udev/rules.d, "
    "run \"sudo udevadm control --reload\" and plug the unit in again",
    "vous n'avez pas le droit d'ouvrir %1 : copiez la règle 60-marlune.rules dans "
    "/etc/udev/rules.d, lancez « sudo udevadm control --reload » et rebranchez l'appareil"};
inline constexpr Phrase kUsbBusy = {
    "the unit is on the bus (%1) but does not open: another program may use it",
    "l'appareil est sur le bus (%1) mais ne s'ouvre pas : un autre programme l'utilise peut-être"};
inline constexpr Phrase kKernelDriver = {
    "the kernel's module garmin_gps is loaded; \"sudo rmmod garmin_gps\" takes it out of the way",
    "le module garmin_gps du noyau est chargé ; « sudo rmmod garmin_gps » l'écarte"};
inline constexpr Phrase kNoDescription = {
    "the drive %1 has no GARMIN/GarminDevice.xml that can be read: the unit writes it when it "
    "starts",
    "le lecteur %1 n'a pas de GARMIN/GarminDevice.xml lisible : l'appareil l'écrit en démarrant"};

// What is known of the unit's protocols.
inline constexpr Phrase kAnnounced = {"the receiver announced its protocols",
                                      "le récepteur a annoncé ses protocoles"};
inline constexpr Phrase kFromTable = {
    "the receiver announced no protocols; they are those of its product",
    "le récepteur n'a pas annoncé de protocoles ; ce sont ceux de son modèle"};
inline constexpr Phrase kGeneric = {
    "the receiver announced no protocols and its product is unknown; they are a guess, and its "
    "records may be misread",
    "le récepteur n'a pas annoncé de protocoles et son modèle est inconnu ; ils sont supposés, et "
    "ses données peuvent être mal lues"};
inline constexpr Phrase kDamagedIdentity = {
    "what the receiver told of itself was damaged on its way (wrong checksum), and its records may "
    "be misread; try again",
    "ce que le récepteur a dit de lui-même a été abîmé en chemin (somme de contrôle fausse), et "
    "ses "
    "données peuvent être mal lues ; réessayez"};
inline constexpr Phrase kNotOnAGuess = {
    "nothing is sent on a guess, which could spoil what the receiver holds; try again, or send "
    "with --trust-table",
    "rien n'est envoyé sur une supposition, qui pourrait abîmer les données du récepteur ; "
    "réessayez, ou envoyez avec --trust-table"};

// How a transfer went: "12 of 39 track points received: the receiver fell silent".
inline constexpr Phrase kReceived = {"%1 of %2 %3 received", "%1 %3 reçus sur %2"};
inline constexpr Phrase kSent = {"%1 of %2 %3 sent", "%1 %3 envoyés sur %2"};
inline constexpr Phrase kCameUnannounced = {"%1 %3 received", "%1 %3 reçus"};
inline constexpr Phrase kNothingReceived = {"no %3 received", "pas de %3 reçus"};
inline constexpr Phrase kNothingSent = {"no %3 sent", "pas de %3 envoyés"};
inline constexpr Phrase kColon = {"%1: %2", "%1 : %2"};

inline constexpr Phrase kWaypoints = {"waypoints", "waypoints"};
inline constexpr Phrase kTracks = {"tracks", "traces"};
inline constexpr Phrase kRoutes = {"routes", "routes"};
inline constexpr Phrase kTrackPoints = {"track points", "points de trace"};
inline constexpr Phrase kRouteRecords = {"route records", "éléments de route"};
inline constexpr Phrase kProximities = {"proximity waypoints", "waypoints de proximité"};
inline constexpr Phrase kTimes = {"times", "relevés d'heure"};
inline constexpr Phrase kPositions = {"positions", "relevés de position"};
inline constexpr Phrase kSentences = {"sentences", "messages NMEA"};

// Why it ended.
inline constexpr Phrase kFewer = {"fewer came than were announced",
                                  "il en est venu moins qu'annoncé"};
inline constexpr Phrase kNothingThere = {"there is nothing", "il n'y en a pas"};
inline constexpr Phrase kInterrupted = {"the receiver fell silent", "le récepteur s'est tu"};
inline constexpr Phrase kEndMissing = {"the end of the list did not come",
                                       "la fin de la liste n'est pas venue"};
inline constexpr Phrase kCancelled = {"stopped", "arrêté"};
inline constexpr Phrase kDisconnected = {"the connection was closed", "la connexion a été fermée"};
inline constexpr Phrase kDeviceGone = {"the device is gone; was it unplugged?",
                                       "le périphérique a disparu ; a-t-il été débranché ?"};
inline constexpr Phrase kRefused = {"the receiver refused", "le récepteur a refusé"};
inline constexpr Phrase kProtocolError = {"a packet came that was not expected (%1)",
                                          "un paquet inattendu est venu (%1)"};
inline constexpr Phrase kNotOffered = {"the receiver does not offer that",
                                       "le récepteur ne le propose pas"};
inline constexpr Phrase kFileError = {"the file cannot be read or written: %1",
                                      "le fichier ne peut pas être lu ou écrit : %1"};
inline constexpr Phrase kNothingInFile = {"the file holds none that can be read",
                                          "le fichier n'en contient aucun qui soit lisible"};
inline constexpr Phrase kUnsendable = {"the next one cannot be expressed for this receiver",
                                       "le suivant ne peut pas être exprimé pour ce récepteur"};
inline constexpr Phrase kNoSession = {"the unit started no session",
                                      "l'appareil n'a pas ouvert de session"};
inline constexpr Phrase kNeedsWaypoints = {"the waypoints that they name did not come",
                                           "les waypoints qu'ils nomment ne sont pas venus"};

// What did not make it.
inline constexpr Phrase kUndecodable = {"%1 could not be decoded", "%1 illisibles"};
inline constexpr Phrase kWrongChecksum = {"%1 had a wrong checksum",
                                          "%1 avec une somme de contrôle fausse"};
inline constexpr Phrase kUnknown = {"%1 were of an unknown kind", "%1 d'un genre inconnu"};
inline constexpr Phrase kOversized = {"%1 pieces had a wrong length",
                                      "%1 morceaux d'une longueur fausse"};
inline constexpr Phrase kUnacknowledged = {"the receiver did not acknowledge %1",
                                           "le récepteur n'en a pas confirmé %1"};
inline constexpr Phrase kLeftOutLines = {
    "line %1 of the file cannot be read, which left out %2",
    "la ligne %1 du fichier est illisible, ce qui en écarte %2"};
inline constexpr Phrase kLeftOutRecords = {
    "number %1 of the file cannot be sent, which left out %2",
    "le numéro %1 du fichier ne peut pas être envoyé, ce qui en écarte %2"};
inline constexpr Phrase kDamaged = {"%1 frames had a wrong checksum and were taken as they came",
                                    "%1 trames à somme de contrôle fausse ont été prises telles "
                                    "quelles"};
inline constexpr Phrase kDuplicates = {"%1 came twice", "%1 sont venus deux fois"};

// Files.
inline constexpr Phrase kKept = {
    "%1 is left as it was, since the transfer is incomplete; --keep-partial writes what came "
    "beside it",
    "%1 reste tel quel, le transfert étant incomplet ; --keep-partial écrit à côté ce qui est "
    "venu"};
inline constexpr Phrase kPartial = {"what came is in %1", "ce qui est venu est dans %1"};
inline constexpr Phrase kLeftOutOfFile = {"%1: left out %2 records without a position on earth",
                                          "%1 : %2 éléments sans position terrestre écartés"};
inline constexpr Phrase kRemark = {"%1: %2", "%1 : %2"};
inline constexpr Phrase kMovedDates = {
    "%1 dates in %2 were moved forward by 1024 weeks or a multiple",
    "%1 dates dans %2 ont été avancées de 1024 semaines ou d'un multiple"};
inline constexpr Phrase kIsFolder = {"%1: the file is a folder", "%1 : le fichier est un dossier"};
inline constexpr Phrase kNoRegularFile = {"%1: the file is no regular file",
                                          "%1 : le fichier n'est pas un fichier ordinaire"};
inline constexpr Phrase kHoldsNone = {"%1: the file holds no %2",
                                      "%1 : le fichier ne contient pas de %2"};
inline constexpr Phrase kNotWritten = {"%1: the file cannot be written",
                                       "%1 : le fichier ne peut pas être écrit"};
inline constexpr Phrase kStandardOutput = {"standard output", "sortie standard"};
inline constexpr Phrase kNoTrace = {"no trace is written: there is no folder %1",
                                    "aucune trace n'est écrite : il n'y a pas de dossier %1"};
inline constexpr Phrase kNoSentences = {"%1 lines were no sentences, and are not shown",
                                        "%1 lignes n'étaient pas des messages et ne sont pas "
                                        "montrées"};

}  // namespace marlune::words::phrase
