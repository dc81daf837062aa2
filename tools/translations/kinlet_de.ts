<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>QCommandLineParser</name>
    <message>
        <source>Arguments:</source>
        <translation>Argumente:</translation>
    </message>
    <message>
        <source>Displays help including Qt specific options.</source>
        <translation>Zeigt Hilfe mit den Optionen von Qt an.</translation>
    </message>
    <message>
        <source>Displays help on commandline options.</source>
        <translation>Zeigt Hilfe zu den Optionen an.</translation>
    </message>
    <message>
        <source>Displays version information.</source>
        <translation>Zeigt die Version an.</translation>
    </message>
    <message>
        <source>Missing value after &apos;%1&apos;.</source>
        <translation>Nach „%1“ fehlt ein Wert.</translation>
    </message>
    <message>
        <source>Options:</source>
        <translation>Optionen:</translation>
    </message>
    <message>
        <source>Unexpected value after &apos;%1&apos;.</source>
        <translation>Unerwarteter Wert nach „%1“.</translation>
    </message>
    <message>
        <source>Unknown option &apos;%1&apos;.</source>
        <translation>Unbekannte Option „%1“.</translation>
    </message>
    <message>
        <source>Unknown options: %1.</source>
        <translation>Unbekannte Optionen: %1.</translation>
    </message>
    <message>
        <source>Usage: %1</source>
        <translation>Aufruf: %1</translation>
    </message>
    <message>
        <source>[options]</source>
        <translation>[Optionen]</translation>
    </message>
</context>
<context>
    <name>Tool</name>
    <message>
        <source>interrupted; nothing has been sent</source>
        <translation>abgebrochen; es wurde nichts gesendet</translation>
    </message>
    <message>
        <source>standard input: %1</source>
        <translation>Standardeingabe: %1</translation>
    </message>
    <message>
        <source>Liked with %1.</source>
        <translation>Mit %1 „Gefällt mir“ angegeben.</translation>
    </message>
    <message>
        <source>Like taken back with %1.</source>
        <translation>Mit %1 „Gefällt mir“ zurückgenommen.</translation>
    </message>
    <message>
        <source>there is no account to post with</source>
        <translation>es gibt kein Konto, mit dem sich etwas veröffentlichen ließe</translation>
    </message>
    <message>
        <source>a post goes to one account; choose it with --account, or say --account all:</source>
        <translation>ein Beitrag geht an ein Konto; wählen Sie es mit --account aus, oder geben Sie --account all für alle an:</translation>
    </message>
    <message>
        <source>Posted with %1.</source>
        <translation>Mit %1 veröffentlicht.</translation>
    </message>
    <message>
        <source>Commented with %1.</source>
        <translation>Mit %1 kommentiert.</translation>
    </message>
    <message>
        <source>it changes what others see of the account: --post tries it</source>
        <translation>es ändert, was andere von dem Konto sehen: --post probiert es aus</translation>
    </message>
    <message>
        <source>it does not support it</source>
        <translation>er unterstützt es nicht</translation>
    </message>
    <message>
        <source>asked %1, it gave the error %2</source>
        <translation>%1 gebeten, meldete er den Fehler %2</translation>
    </message>
    <message>
        <source>to like the newest activity</source>
        <translation>um ein „Gefällt mir“ für die neueste Aktivität</translation>
    </message>
    <message>
        <source>to take back the like</source>
        <translation>um die Rücknahme des „Gefällt mir“</translation>
    </message>
    <message>
        <source>it has no account</source>
        <translation>er hat kein Konto</translation>
    </message>
    <message>
        <source>A test by &quot;kinlet check&quot;, %1: it can be deleted.</source>
        <translation>Ein Test von „kinlet check“, %1: Er kann gelöscht werden.</translation>
    </message>
    <message>
        <source>to post</source>
        <translation>um einen Beitrag</translation>
    </message>
    <message>
        <source>for activities</source>
        <translation>um Aktivitäten</translation>
    </message>
    <message>
        <source>it gave no activities</source>
        <translation>er lieferte keine Aktivitäten</translation>
    </message>
    <message>
        <source>it answers nothing</source>
        <translation>er beantwortet nichts</translation>
    </message>
    <message>
        <source>for what no provider supports</source>
        <translation>um etwas, das kein Anbieter unterstützt,</translation>
    </message>
    <message>
        <source>it answered a request of unknown kind without an error</source>
        <translation>er beantwortete eine Anfrage unbekannter Art ohne Fehler</translation>
    </message>
    <message>
        <source>nothing led to an error other than UnsupportedRequest</source>
        <translation>nichts führte zu einem anderen Fehler als UnsupportedRequest</translation>
    </message>
    <message>
        <source>it does not load</source>
        <translation>er lässt sich nicht laden</translation>
    </message>
    <message>
        <source>BROKEN</source>
        <translation>VERLETZT</translation>
    </message>
    <message>
        <source>kept</source>
        <translation>eingehalten</translation>
    </message>
    <message>
        <source>not checked</source>
        <translation>ungeprüft</translation>
    </message>
    <message>
        <source>%1 kept, %2 broken, %3 not checked</source>
        <translation>%1 eingehalten, %2 verletzt, %3 ungeprüft</translation>
    </message>
    <message>
        <source>there is no file &quot;%1&quot;</source>
        <translation>es gibt keine Datei „%1“</translation>
    </message>
    <message>
        <source>it hung</source>
        <translation>er blieb hängen</translation>
    </message>
    <message>
        <source>it crashed (%1)</source>
        <translation>er stürzte ab (%1)</translation>
    </message>
    <message>
        <source>it ended the process (exit code %1)</source>
        <translation>er beendete den Prozess (Exit-Code %1)</translation>
    </message>
    <message>
        <source>%1 when %2</source>
        <translation>%1, als %2</translation>
    </message>
    <message>
        <source>services</source>
        <comment>after: asked for</comment>
        <translation>Dienste</translation>
    </message>
    <message>
        <source>accounts</source>
        <comment>after: asked for</comment>
        <translation>Konten</translation>
    </message>
    <message>
        <source>persons</source>
        <comment>after: asked for</comment>
        <translation>Personen</translation>
    </message>
    <message>
        <source>activities</source>
        <comment>after: asked for</comment>
        <translation>Aktivitäten</translation>
    </message>
    <message>
        <source>likers</source>
        <comment>after: asked for</comment>
        <translation>„Gefällt mir“-Angaben</translation>
    </message>
    <message>
        <source>for %1</source>
        <translation>um %1</translation>
    </message>
    <message>
        <source>for the likers of an activity that does not exist</source>
        <translation>um die „Gefällt mir“-Angaben zu einer Aktivität, die es nicht gibt,</translation>
    </message>
    <message>
        <source>there is no memory for it</source>
        <translation>dafür reicht der Speicher nicht</translation>
    </message>
    <message>
        <source>it was told to cancel a request</source>
        <translation>er eine Anfrage abbrechen sollte</translation>
    </message>
    <message>
        <source>it had been told to cancel a request</source>
        <translation>er eine Anfrage schon abgebrochen haben sollte</translation>
    </message>
    <message>
        <source>it answered a request that had been cancelled</source>
        <translation>er beantwortete eine Anfrage, die abgebrochen worden war</translation>
    </message>
    <message>
        <source>it reported progress of a request that had been cancelled</source>
        <translation>er meldete den Fortschritt einer Anfrage, die abgebrochen worden war</translation>
    </message>
    <message>
        <source>it gave results to a request that had been cancelled</source>
        <translation>er gab einer Anfrage, die abgebrochen worden war, noch Ergebnisse</translation>
    </message>
    <message>
        <source>a request had been deleted when it had finished</source>
        <translation>eine Anfrage an ihrem Ende gelöscht worden war</translation>
    </message>
    <message>
        <source>it was asked %1</source>
        <translation>er %1 gebeten wurde</translation>
    </message>
    <message>
        <source>a request had been deleted when it was cancelled</source>
        <translation>eine Anfrage beim Abbrechen gelöscht worden war</translation>
    </message>
    <message>
        <source>it was unloaded</source>
        <translation>er entladen wurde</translation>
    </message>
    <message>
        <source>it was loaded</source>
        <translation>er geladen wurde</translation>
    </message>
    <message>
        <source>it cannot be loaded: %1</source>
        <translation>er lässt sich nicht laden: %1</translation>
    </message>
    <message>
        <source>it is a plug-in, but no provider</source>
        <translation>die Datei ist ein Plug-in, aber kein Anbieter</translation>
    </message>
    <message>
        <source>metaData() was called</source>
        <translation>metaData() aufgerufen wurde</translation>
    </message>
    <message>
        <source>init() was called</source>
        <translation>init() aufgerufen wurde</translation>
    </message>
    <message>
        <source>%1 of the account &quot;%2&quot;</source>
        <translation>%1 des Kontos „%2“</translation>
    </message>
    <message>
        <source>it gave no persons and no activities</source>
        <translation>er lieferte weder Personen noch Aktivitäten</translation>
    </message>
    <message>
        <source>one of its %1 has no &quot;Id&quot;</source>
        <translation>er liefert %1 ohne „Id“</translation>
    </message>
    <message>
        <source>&quot;%1&quot; among its %2 has the &quot;ParentAccount&quot; &quot;%3&quot;, which is no account of it</source>
        <translation>er liefert %2, darunter „%1“ mit dem „ParentAccount“ „%3“, das keines seiner Konten ist</translation>
    </message>
    <message>
        <source>two of its %1 have the same &quot;Id&quot;</source>
        <translation>er liefert zwei %1 mit derselben „Id“</translation>
    </message>
    <message>
        <source>asked twice for %1, it gave other ids the second time</source>
        <translation>zweimal um %1 gebeten, lieferte er beim zweiten Mal andere Ids</translation>
    </message>
    <message>
        <source>it takes two accounts to judge</source>
        <translation>um das zu beurteilen, braucht es zwei Konten</translation>
    </message>
    <message>
        <source>it takes two activities to judge</source>
        <translation>um das zu beurteilen, braucht es zwei Aktivitäten</translation>
    </message>
    <message numerus="yes">
        <source>for at most %n activities</source>
        <translation>
            <numerusform>um höchstens %n Aktivität</numerusform>
            <numerusform>um höchstens %n Aktivitäten</numerusform>
        </translation>
    </message>
    <message>
        <source>asked %1, it gave %2</source>
        <translation>%1 gebeten, lieferte er %2</translation>
    </message>
    <message>
        <source>asked %1, it left out the newest</source>
        <translation>%1 gebeten, ließ er die neuesten weg</translation>
    </message>
    <message>
        <source>it gave no activity with a StartTime</source>
        <translation>er lieferte keine Aktivität mit einer StartTime</translation>
    </message>
    <message>
        <source>for activities before a time</source>
        <translation>um Aktivitäten vor einem Zeitpunkt</translation>
    </message>
    <message>
        <source>asked for activities before %1, it gave one of %2</source>
        <translation>um Aktivitäten vor %1 gebeten, lieferte er eine von %2</translation>
    </message>
    <message>
        <source>for activities after a time</source>
        <translation>um Aktivitäten nach einem Zeitpunkt</translation>
    </message>
    <message>
        <source>asked for activities after %1, it gave one of %2</source>
        <translation>um Aktivitäten nach %1 gebeten, lieferte er eine von %2</translation>
    </message>
    <message>
        <source>two of its %1 have the &quot;Id&quot; &quot;%2&quot;</source>
        <translation>er liefert zwei %1 mit der „Id“ „%2“</translation>
    </message>
    <message>
        <source>it refuses the request for its %1</source>
        <translation>er lehnt die Bitte um seine %1 ab</translation>
    </message>
    <message>
        <source>asked for its %1, it gave the error %2</source>
        <translation>um seine %1 gebeten, meldete er den Fehler %2</translation>
    </message>
    <message>
        <source>it has no %1</source>
        <translation>er hat keine %1</translation>
    </message>
    <message>
        <source>metaData() has no text under &quot;name&quot;</source>
        <translation>metaData() enthält unter „name“ keinen Text</translation>
    </message>
    <message>
        <source>the name &quot;%1&quot; cannot be part of a bus name</source>
        <translation>der Name „%1“ kann nicht Teil eines Busnamens sein</translation>
    </message>
    <message>
        <source>the name was &quot;%1&quot; before init() and is &quot;%2&quot; after it</source>
        <translation>der Name war vor init() „%1“ und ist danach „%2“</translation>
    </message>
    <message>
        <source>error() came with the name &quot;%1&quot;, but it is called &quot;%2&quot;</source>
        <translation>error() kam mit dem Namen „%1“, er heißt aber „%2“</translation>
    </message>
    <message>
        <source>the account &quot;%1&quot; is on the service &quot;%2&quot;, which it does not report</source>
        <translation>das Konto „%1“ gehört zum Dienst „%2“, den er nicht meldet</translation>
    </message>
    <message>
        <source>loads, and is a provider</source>
        <translation>lässt sich laden und ist ein Anbieter</translation>
    </message>
    <message>
        <source>Derive one class from KinletInterface, with Q_OBJECT, Q_PLUGIN_METADATA(IID &quot;com.orvane.lumend.Kinlet/1.0&quot;) and Q_INTERFACES(KinletInterface), and build it for the same Qt as this program.</source>
        <translation>Eine Klasse von KinletInterface ableiten, mit Q_OBJECT, Q_PLUGIN_METADATA(IID &quot;com.orvane.lumend.Kinlet/1.0&quot;) und Q_INTERFACES(KinletInterface), und sie für dasselbe Qt bauen wie dieses Programm.</translation>
    </message>
    <message>
        <source>names itself</source>
        <translation>nennt seinen Namen</translation>
    </message>
    <message>
        <source>Return {&quot;name&quot;, NAME} from metaData(), always the same, before init() too: letters, digits and _, no digit first. Give error() that name.</source>
        <translation>Aus metaData() {&quot;name&quot;, NAME} zurückgeben, immer denselben, auch vor init(): Buchstaben, Ziffern und _, keine Ziffer am Anfang. Diesen Namen auch error() mitgeben.</translation>
    </message>
    <message>
        <source>answers in time, whatever it is asked for</source>
        <translation>antwortet rechtzeitig, worum er auch gebeten wird</translation>
    </message>
    <message>
        <source>ends with status Finished</source>
        <translation>endet mit dem Status Finished</translation>
    </message>
    <message>
        <source>End with SocialDataRequest::Finished and errors. Stopped keeps applications waiting for the time-out.</source>
        <translation>Mit SocialDataRequest::Finished und Fehlern enden. Bei Stopped warten Anwendungen, bis die Zeit abgelaufen ist.</translation>
    </message>
    <message>
        <source>answers exactly once</source>
        <translation>antwortet genau einmal</translation>
    </message>
    <message>
        <source>Call setRequestProgress() with Finished once for each request, and nothing on it afterwards: set the results before. Return after ending a request.</source>
        <translation>setRequestProgress() für jede Anfrage einmal mit Finished aufrufen und danach nichts mehr: die Ergebnisse vorher setzen. Nach dem Ende einer Anfrage zurückkehren.</translation>
    </message>
    <message>
        <source>reports its services</source>
        <translation>meldet seine Dienste</translation>
    </message>
    <message>
        <source>Leave the request to KinletInterface::performRequest(), and give each service in services() an &quot;Id&quot; of its own.</source>
        <translation>Die Anfrage KinletInterface::performRequest() überlassen und jedem Dienst in services() eine eigene „Id“ geben.</translation>
    </message>
    <message>
        <source>reports its accounts, each on one of its services</source>
        <translation>meldet seine Konten, jedes bei einem seiner Dienste</translation>
    </message>
    <message>
        <source>Leave the request to KinletInterface::performRequest(). Give each account in accounts() an &quot;Id&quot; of its own, and the &quot;Id&quot; of one of your services() as its SocialServiceId.</source>
        <translation>Die Anfrage KinletInterface::performRequest() überlassen. Jedem Konto in accounts() eine eigene „Id“ geben und als SocialServiceId die „Id“ eines der eigenen services().</translation>
    </message>
    <message>
        <source>gives records with &quot;Id&quot; and &quot;ParentAccount&quot;</source>
        <translation>liefert Datensätze mit „Id“ und „ParentAccount“</translation>
    </message>
    <message>
        <source>Set SocialGenericData::Id and call setParentAccount() with the id of one of your accounts on every person and activity.</source>
        <translation>Bei jeder Person und jeder Aktivität SocialGenericData::Id setzen und setParentAccount() mit der Id eines der eigenen Konten aufrufen.</translation>
    </message>
    <message>
        <source>gives the same records the same ids</source>
        <translation>gibt denselben Datensätzen dieselben Ids</translation>
    </message>
    <message>
        <source>keeps to the account filter</source>
        <translation>hält sich an den Kontenfilter</translation>
    </message>
    <message>
        <source>keeps to the limit of activities, newest first to stay</source>
        <translation>hält sich an die Höchstzahl der Aktivitäten und behält die neuesten</translation>
    </message>
    <message>
        <source>Answer with at most limit() activities: those with the newest StartTime. A limit less than 1 is none.</source>
        <translation>Mit höchstens limit() Aktivitäten antworten: denen mit der neuesten StartTime. Eine Grenze unter 1 ist keine.</translation>
    </message>
    <message>
        <source>keeps to the time bounds of activities</source>
        <translation>hält sich an die Zeitgrenzen der Aktivitäten</translation>
    </message>
    <message>
        <source>Leave out activities whose StartTime is not older than before(), or not newer than after(), where these are not null.</source>
        <translation>Aktivitäten weglassen, deren StartTime nicht älter als before() oder nicht neuer als after() ist, soweit diese nicht null sind.</translation>
    </message>
    <message>
        <source>describes its errors</source>
        <translation>beschreibt seine Fehler</translation>
    </message>
    <message>
        <source>refuses what it does not support</source>
        <translation>lehnt ab, was er nicht unterstützt</translation>
    </message>
    <message>
        <source>End requests that you do not know with an error of type KinletError::UnsupportedRequest, as KinletInterface::performRequest() does.</source>
        <translation>Unbekannte Anfragen mit einem Fehler vom Typ KinletError::UnsupportedRequest beenden, wie es KinletInterface::performRequest() tut.</translation>
    </message>
    <message>
        <source>leaves a cancelled request alone</source>
        <translation>lässt eine abgebrochene Anfrage in Ruhe</translation>
    </message>
    <message>
        <source>In cancelRequest(), abort the work and forget the request: no results and no progress reports any more.</source>
        <translation>In cancelRequest() die Arbeit abbrechen und die Anfrage vergessen: keine Ergebnisse und keine Fortschrittsmeldungen mehr.</translation>
    </message>
    <message>
        <source>survives requests that are deleted</source>
        <translation>übersteht das Löschen von Anfragen</translation>
    </message>
    <message>
        <source>Never touch a request after it has finished or was cancelled. Keep QPointer&lt;SocialDataRequest&gt;, and drop it in cancelRequest().</source>
        <translation>Eine Anfrage nicht mehr anrühren, wenn sie zu Ende ist oder abgebrochen wurde. QPointer&lt;SocialDataRequest&gt; verwenden und ihn in cancelRequest() leeren.</translation>
    </message>
    <message>
        <source>does not hold up the event loop</source>
        <translation>hält die Ereignisschleife nicht auf</translation>
    </message>
    <message>
        <source>posts</source>
        <translation>veröffentlicht Beiträge</translation>
    </message>
    <message>
        <source>See the error. Refuse posts as an unsupported request if there is no posting.</source>
        <translation>Siehe den Fehler. Wenn sich nichts veröffentlichen lässt, Beiträge als nicht unterstützte Anfrage ablehnen.</translation>
    </message>
    <message>
        <source>likes, and takes the like back</source>
        <translation>gibt „Gefällt mir“ an und nimmt es zurück</translation>
    </message>
    <message>
        <source>See the error. Refuse likes as an unsupported request if there is no liking.</source>
        <translation>Siehe den Fehler. Wenn es kein „Gefällt mir“ gibt, es als nicht unterstützte Anfrage ablehnen.</translation>
    </message>
    <message>
        <source>neither crashes nor hangs</source>
        <translation>stürzt nicht ab und bleibt nicht hängen</translation>
    </message>
    <message>
        <source>Run the same request in a debugger: kinlet --in-process, with --plugin-path.</source>
        <translation>Dieselbe Anfrage in einem Debugger ausführen: kinlet --in-process, mit --plugin-path.</translation>
    </message>
    <message>
        <source>ID</source>
        <translation>ID</translation>
    </message>
    <message>
        <source>only this account, repeatable; &quot;all&quot; to post with every one</source>
        <translation>nur dieses Konto, wiederholbar; „all“: mit allen veröffentlichen</translation>
    </message>
    <message>
        <source>N</source>
        <translation>N</translation>
    </message>
    <message>
        <source>at most so many entries (timeline: 20, comments of show: 100)</source>
        <translation>höchstens so viele Einträge (timeline: 20, Kommentare bei show: 100)</translation>
    </message>
    <message>
        <source>TIME</source>
        <translation>ZEIT</translation>
    </message>
    <message>
        <source>only what is older: 2026-03-12 or 2026-03-12T14:30, Z for UTC</source>
        <translation>nur Älteres: 2026-03-12 oder 2026-03-12T14:30, mit Z für UTC</translation>
    </message>
    <message>
        <source>only what is newer</source>
        <translation>nur Neueres</translation>
    </message>
    <message>
        <source>PROPERTY=REGEXP</source>
        <translation>MERKMAL=REGEXP</translation>
    </message>
    <message>
        <source>only persons whose property matches, repeatable</source>
        <translation>nur Personen, deren Merkmal passt, wiederholbar</translation>
    </message>
    <message>
        <source>PERSON</source>
        <translation>PERSON</translation>
    </message>
    <message>
        <source>only what the person with this id has published</source>
        <translation>nur was die Person mit dieser ID veröffentlicht hat</translation>
    </message>
    <message>
        <source>TYPE</source>
        <translation>ART</translation>
    </message>
    <message>
        <source>status (if not given), comment, message or any</source>
        <translation>status (ohne diese Angabe), comment, message oder any</translation>
    </message>
    <message>
        <source>check: also post and like, which others may see</source>
        <translation>check: auch Beiträge und „Gefällt mir“, was andere sehen können</translation>
    </message>
    <message>
        <source>SECONDS</source>
        <translation>SEKUNDEN</translation>
    </message>
    <message>
        <source>check: how long a call may hold up the event loop (0.2)</source>
        <translation>check: wie lange ein Aufruf die Ereignisschleife aufhalten darf (0.2)</translation>
    </message>
    <message>
        <source>one JSON object a line, with every property</source>
        <translation>ein JSON-Objekt je Zeile, mit allen Merkmalen</translation>
    </message>
    <message>
        <source>exact times instead of relative ones</source>
        <translation>genaue statt ungefährer Zeiten</translation>
    </message>
    <message>
        <source>load provider plug-ins into this process</source>
        <translation>Anbieter-Plug-ins in diesen Prozess laden</translation>
    </message>
    <message>
        <source>use the providers on the session bus</source>
        <translation>die Anbieter auf dem Sitzungsbus verwenden</translation>
    </message>
    <message>
        <source>DIR</source>
        <translation>ORDNER</translation>
    </message>
    <message>
        <source>load provider plug-ins from this folder; means --in-process</source>
        <translation>Anbieter-Plug-ins aus diesem Ordner laden; schließt --in-process ein</translation>
    </message>
    <message>
        <source>how long providers may take to start (10)</source>
        <translation>wie lange Anbieter zum Starten brauchen dürfen (10)</translation>
    </message>
    <message>
        <source>how long to wait for answers (10)</source>
        <translation>wie lange auf Antworten gewartet wird (10)</translation>
    </message>
    <message>
        <source>print this text</source>
        <translation>diesen Text ausgeben</translation>
    </message>
    <message>
        <source>print the version</source>
        <translation>die Version ausgeben</translation>
    </message>
    <message>
        <source>Usage: kinlet COMMAND [ARGUMENT...] [OPTION...]

Social networks on the command line.

Commands:
</source>
        <translation>Aufruf: kinlet BEFEHL [ARGUMENT...] [OPTION...]

Soziale Netzwerke auf der Kommandozeile.

Befehle:
</translation>
    </message>
    <message>
        <source>
Options:
</source>
        <translation>
Optionen:
</translation>
    </message>
    <message>
        <source>
A TEXT that is - is read from standard input; one that begins with a dash goes after --.

Exit codes:
</source>
        <translation>
Ein TEXT - wird von der Standardeingabe gelesen; einer, der mit - beginnt, gehört hinter --.

Exit-Codes:
</translation>
    </message>
    <message>
        <source>done</source>
        <translation>erledigt</translation>
    </message>
    <message>
        <source>ended with errors; what did come has been printed</source>
        <translation>mit Fehlern beendet; was ankam, wurde ausgegeben</translation>
    </message>
    <message>
        <source>wrong use</source>
        <translation>falsche Verwendung</translation>
    </message>
    <message>
        <source>no provider</source>
        <translation>kein Anbieter</translation>
    </message>
    <message>
        <source>
Environment:
</source>
        <translation>
Umgebungsvariablen:
</translation>
    </message>
    <message>
        <source>a value with a 0 in it means --in-process, any other --bus</source>
        <translation>ein Wert mit einer 0 darin bedeutet --in-process, jeder andere --bus</translation>
    </message>
    <message>
        <source>the folder of the provider plug-ins</source>
        <translation>der Ordner der Anbieter-Plug-ins</translation>
    </message>
    <message>
        <source>the width to wrap lines at</source>
        <translation>die Breite, bei der Zeilen umbrochen werden</translation>
    </message>
    <message>
        <source>if not empty, no colours, not even on a terminal</source>
        <translation>wenn nicht leer, keine Farben, auch nicht auf einem Terminal</translation>
    </message>
    <message>
        <source>unknown option &quot;%1&quot;</source>
        <translation>unbekannte Option „%1“</translation>
    </message>
    <message>
        <source>unknown command &quot;%1&quot;</source>
        <translation>unbekannter Befehl „%1“</translation>
    </message>
    <message>
        <source>; the commands are %1</source>
        <translation>; es gibt die Befehle %1</translation>
    </message>
    <message>
        <source>%1 does not take --%2</source>
        <translation>%1 kennt --%2 nicht</translation>
    </message>
    <message>
        <source>; it takes --%1</source>
        <translation>; es kennt --%1</translation>
    </message>
    <message>
        <source>%1 is missing: %2</source>
        <translation>%1 fehlt: %2</translation>
    </message>
    <message>
        <source>too many arguments, from &quot;%1&quot; on: %2%3</source>
        <translation>zu viele Argumente, ab „%1“: %2%3</translation>
    </message>
    <message>
        <source> (put the text in quotes)</source>
        <translation> (der Text gehört in Anführungszeichen)</translation>
    </message>
    <message>
        <source>--%1 takes a number of seconds, not &quot;%2&quot;</source>
        <translation>--%1 erwartet eine Anzahl von Sekunden, nicht „%2“</translation>
    </message>
    <message>
        <source>--%1 takes a time like 2026-03-12 or 2026-03-12T14:30, not &quot;%2&quot;</source>
        <translation>--%1 erwartet eine Zeit wie 2026-03-12 oder 2026-03-12T14:30, nicht „%2“</translation>
    </message>
    <message>
        <source>--filter takes PROPERTY=REGEXP, not &quot;%1&quot;</source>
        <translation>--filter erwartet MERKMAL=REGEXP, nicht „%1“</translation>
    </message>
    <message>
        <source>persons have no property &quot;%1&quot;</source>
        <translation>Personen haben kein Merkmal „%1“</translation>
    </message>
    <message>
        <source>; they have %1</source>
        <translation>; es gibt %1</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not a regular expression: %2</source>
        <translation>„%1“ ist kein regulärer Ausdruck: %2</translation>
    </message>
    <message>
        <source>unknown type &quot;%1&quot;</source>
        <translation>unbekannte Art „%1“</translation>
    </message>
    <message>
        <source>; the types are %1</source>
        <translation>; es gibt die Arten %1</translation>
    </message>
    <message>
        <source>--limit takes a number from 1 on, not &quot;%1&quot;</source>
        <translation>--limit erwartet eine Zahl ab 1, nicht „%1“</translation>
    </message>
    <message>
        <source>--bus does not go with %1</source>
        <translation>--bus und %1 schließen einander aus</translation>
    </message>
    <message>
        <source>--plugin-path: there is no folder &quot;%1&quot;</source>
        <translation>--plugin-path: es gibt keinen Ordner „%1“</translation>
    </message>
    <message>
        <source>no command was given</source>
        <translation>es fehlt ein Befehl</translation>
    </message>
    <message>
        <source>list the social networks</source>
        <translation>die sozialen Netzwerke auflisten</translation>
    </message>
    <message>
        <source>list your accounts</source>
        <translation>die eigenen Konten auflisten</translation>
    </message>
    <message>
        <source>list what connects to the networks</source>
        <translation>auflisten, was die Verbindung zu den Netzwerken herstellt</translation>
    </message>
    <message>
        <source>list your contacts</source>
        <translation>die eigenen Kontakte auflisten</translation>
    </message>
    <message>
        <source>show what is new, newest first</source>
        <translation>zeigen, was es Neues gibt, das Neueste zuerst</translation>
    </message>
    <message>
        <source>show an activity, its comments and its likers</source>
        <translation>eine Aktivität zeigen, mit Kommentaren und wem sie gefällt</translation>
    </message>
    <message>
        <source>TEXT</source>
        <translation>TEXT</translation>
    </message>
    <message>
        <source>publish a status</source>
        <translation>einen Status veröffentlichen</translation>
    </message>
    <message>
        <source>ID TEXT</source>
        <translation>ID TEXT</translation>
    </message>
    <message>
        <source>comment on an activity</source>
        <translation>eine Aktivität kommentieren</translation>
    </message>
    <message>
        <source>like an activity</source>
        <translation>bei einer Aktivität „Gefällt mir“ angeben</translation>
    </message>
    <message>
        <source>take a like back</source>
        <translation>ein „Gefällt mir“ zurücknehmen</translation>
    </message>
    <message>
        <source>list who likes an activity</source>
        <translation>auflisten, wem eine Aktivität gefällt</translation>
    </message>
    <message>
        <source>FILE</source>
        <translation>DATEI</translation>
    </message>
    <message>
        <source>read an ActivityStreams 2.0 archive</source>
        <translation>ein Archiv im Format ActivityStreams 2.0 einlesen</translation>
    </message>
    <message>
        <source>print what comes in, until Ctrl-C</source>
        <translation>laufend ausgeben, was eintrifft, bis Strg-C</translation>
    </message>
    <message>
        <source>[start] [NAME]</source>
        <translation>[start] [NAME]</translation>
    </message>
    <message>
        <source>list the providers on the bus, or have it start them</source>
        <translation>die Anbieter auf dem Bus auflisten oder von ihm starten lassen</translation>
    </message>
    <message>
        <source>FILE.so</source>
        <translation>DATEI.so</translation>
    </message>
    <message>
        <source>tell what a provider keeps and breaks of the contract</source>
        <translation>sagen, was ein Anbieter vom Vertrag einhält und was er verletzt</translation>
    </message>
    <message>
        <source>NAME DIR</source>
        <translation>NAME ORDNER</translation>
    </message>
    <message>
        <source>write the beginnings of a provider into a new folder</source>
        <translation>den Anfang eines Anbieters in einen neuen Ordner schreiben</translation>
    </message>
    <message>
        <source>is a folder</source>
        <translation>ist ein Ordner</translation>
    </message>
    <message>
        <source>%1 cannot be made</source>
        <translation>%1 lässt sich nicht anlegen</translation>
    </message>
    <message>
        <source>%1 cannot be written</source>
        <translation>%1 lässt sich nicht schreiben</translation>
    </message>
    <message>
        <source>importing %1</source>
        <translation>importiere %1</translation>
    </message>
    <message>
        <source>no reason was given</source>
        <translation>es wurde kein Grund genannt</translation>
    </message>
    <message>
        <source>Imported %1: persons added %2, removed %3, merged %4.</source>
        <translation>%1 importiert; Personen: %2 hinzugefügt, %3 entfernt, %4 zusammengeführt.</translation>
    </message>
    <message>
        <source>Imported %1 by another program that is running.</source>
        <translation>%1 importiert, von einem anderen Programm, das gerade läuft.</translation>
    </message>
    <message>
        <source>archives are imported by the provider &quot;local&quot;, which is not there; it is local.so in a folder of provider plug-ins (KINLET_PLUGIN_PATH or --plugin-path)</source>
        <translation>Archive importiert der Anbieter „local“, der hier fehlt; er ist die Datei local.so in einem Ordner mit Anbieter-Plug-ins (KINLET_PLUGIN_PATH oder --plugin-path)</translation>
    </message>
    <message>
        <source>the import is not finished; it goes on when a program with the local provider runs</source>
        <translation>der Import ist noch nicht beendet; er geht weiter, wenn ein Programm mit dem Anbieter „local“ läuft</translation>
    </message>
    <message>
        <source>not yet read; it waits in %1</source>
        <translation>noch nicht gelesen; die Datei wartet in %1</translation>
    </message>
    <message>
        <source>like</source>
        <translation>„Gefällt mir“</translation>
    </message>
    <message>
        <source>comment</source>
        <translation>Kommentar</translation>
    </message>
    <message>
        <source>post</source>
        <translation>Beitrag</translation>
    </message>
    <message>
        <source>share</source>
        <translation>Teilen</translation>
    </message>
    <message>
        <source>message</source>
        <translation>Nachricht</translation>
    </message>
    <message>
        <source>NAME</source>
        <translation>NAME</translation>
    </message>
    <message>
        <source>ACTIONS</source>
        <translation>AKTIONEN</translation>
    </message>
    <message>
        <source>PROVIDER</source>
        <translation>ANBIETER</translation>
    </message>
    <message>
        <source>no services</source>
        <translation>keine Dienste</translation>
    </message>
    <message>
        <source>SERVICE</source>
        <translation>DIENST</translation>
    </message>
    <message>
        <source>no accounts</source>
        <translation>keine Konten</translation>
    </message>
    <message>
        <source>DETAILS</source>
        <translation>EINZELHEITEN</translation>
    </message>
    <message>
        <source>1 like</source>
        <translation>1 „Gefällt mir“-Angabe</translation>
    </message>
    <message numerus="yes">
        <source>%n likes</source>
        <translation>
            <numerusform>%n „Gefällt mir“-Angabe</numerusform>
            <numerusform>%n „Gefällt mir“-Angaben</numerusform>
        </translation>
    </message>
    <message>
        <source>you like it</source>
        <translation>gefällt Ihnen</translation>
    </message>
    <message>
        <source>1 comment</source>
        <translation>1 Kommentar</translation>
    </message>
    <message numerus="yes">
        <source>%n comments</source>
        <translation>
            <numerusform>%n Kommentar</numerusform>
            <numerusform>%n Kommentare</numerusform>
        </translation>
    </message>
    <message>
        <source>file</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>picture</source>
        <translation>Bild</translation>
    </message>
    <message>
        <source>film</source>
        <translation>Film</translation>
    </message>
    <message>
        <source>sound</source>
        <translation>Ton</translation>
    </message>
    <message>
        <source>link</source>
        <translation>Link</translation>
    </message>
    <message>
        <source>somebody</source>
        <translation>jemand</translation>
    </message>
    <message>
        <source>%1 to %2</source>
        <translation>%1 an %2</translation>
    </message>
    <message>
        <source>STATUS</source>
        <translation>STATUS</translation>
    </message>
    <message>
        <source>ACCOUNT</source>
        <translation>KONTO</translation>
    </message>
    <message>
        <source>no persons</source>
        <translation>keine Personen</translation>
    </message>
    <message>
        <source>on %1</source>
        <translation>zu %1</translation>
    </message>
    <message>
        <source>no activity with the id &quot;%1&quot; was found</source>
        <translation>keine Aktivität mit der ID „%1“ gefunden</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is in several accounts; choose one with --account:</source>
        <translation>„%1“ kommt in mehreren Konten vor; wählen Sie eines mit --account aus:</translation>
    </message>
    <message>
        <source>no provider was found</source>
        <translation>kein Anbieter gefunden</translation>
    </message>
    <message>
        <source>looked for plug-ins in %1</source>
        <translation>gesucht wurden Plug-ins in %1</translation>
    </message>
    <message>
        <source>looked on the session bus: &quot;kinlet runners&quot; lists what it can start, and &quot;kinlet runners start&quot; has it started; --in-process (or KINLET_USE_DBUS=0) loads plug-ins into this process instead</source>
        <translation>gesucht wurde auf dem Sitzungsbus: „kinlet runners“ listet auf, was er starten kann, und „kinlet runners start“ lässt es ihn starten; --in-process (oder KINLET_USE_DBUS=0) lädt stattdessen Plug-ins in diesen Prozess</translation>
    </message>
    <message>
        <source>to get one, install a package kinlet-provider-..., or name a folder of plug-ins with --plugin-path or KINLET_PLUGIN_PATH</source>
        <translation>um einen zu bekommen, installieren Sie ein Paket kinlet-provider-... oder geben Sie mit --plugin-path oder KINLET_PLUGIN_PATH einen Ordner mit Plug-ins an</translation>
    </message>
    <message>
        <source>kinlet --help tells more</source>
        <translation>mehr dazu mit kinlet --help</translation>
    </message>
    <message>
        <source>the output cannot be written: %1</source>
        <translation>die Ausgabe lässt sich nicht schreiben: %1</translation>
    </message>
    <message>
        <source>; did you mean &quot;%1&quot;?</source>
        <translation>; meinten Sie „%1“?</translation>
    </message>
    <message>
        <source>&quot;%1&quot; cannot be the name of a provider: letters, digits and _ only, no digit first, at most %2 of them</source>
        <translation>„%1“ kann nicht der Name eines Anbieters sein: nur Buchstaben, Ziffern und _, keine Ziffer am Anfang, höchstens %2 Zeichen</translation>
    </message>
    <message>
        <source>the name &quot;%1&quot; is taken</source>
        <translation>der Name „%1“ ist vergeben</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not a folder</source>
        <translation>„%1“ ist kein Ordner</translation>
    </message>
    <message>
        <source>the folder &quot;%1&quot; is not empty</source>
        <translation>der Ordner „%1“ ist nicht leer</translation>
    </message>
    <message>
        <source>the folder &quot;%1&quot; cannot be made</source>
        <translation>der Ordner „%1“ lässt sich nicht anlegen</translation>
    </message>
    <message>
        <source>&quot;%1&quot; cannot be written: %2</source>
        <translation>„%1“ lässt sich nicht schreiben: %2</translation>
    </message>
    <message>
        <source>&quot;%1&quot; cannot be made a program</source>
        <translation>„%1“ lässt sich nicht ausführbar machen</translation>
    </message>
    <message>
        <source>The provider &quot;%1&quot; is in %2. It works, with sample data in place of a network:</source>
        <translation>Der Anbieter „%1“ liegt in %2. Er funktioniert schon, mit Beispieldaten statt eines Netzwerks:</translation>
    </message>
    <message>
        <source>The places to fill in (grep -rn &quot;FILL IN&quot;):</source>
        <translation>Die Stellen, die auszufüllen sind (grep -rn &quot;FILL IN&quot;):</translation>
    </message>
    <message>
        <source>PLACE</source>
        <translation>STELLE</translation>
    </message>
    <message>
        <source>WHAT</source>
        <translation>WAS</translation>
    </message>
    <message>
        <source>waiting for runners</source>
        <translation>warte auf Runner</translation>
    </message>
    <message>
        <source>interrupted</source>
        <translation>abgebrochen</translation>
    </message>
    <message>
        <source>can be started</source>
        <translation>kann gestartet werden</translation>
    </message>
    <message>
        <source>running</source>
        <translation>läuft</translation>
    </message>
    <message>
        <source>does not answer</source>
        <translation>antwortet nicht</translation>
    </message>
    <message>
        <source>%1, not started by the bus</source>
        <translation>%1, nicht vom Bus gestartet</translation>
    </message>
    <message>
        <source>no runners on the bus; install a package kinlet-provider-..., or start one: kinlet-runner NAME</source>
        <translation>keine Runner auf dem Bus; installieren Sie ein Paket kinlet-provider-... oder starten Sie einen: kinlet-runner NAME</translation>
    </message>
    <message>
        <source>STATE</source>
        <translation>ZUSTAND</translation>
    </message>
    <message>
        <source>VERSION</source>
        <translation>VERSION</translation>
    </message>
    <message>
        <source>has not started yet</source>
        <translation>ist noch nicht gestartet</translation>
    </message>
    <message>
        <source>did not start within %1 s</source>
        <translation>ist nicht binnen %1 s gestartet</translation>
    </message>
    <message>
        <source>the bus cannot start a runner &quot;%1&quot;</source>
        <translation>der Bus kann keinen Runner „%1“ starten</translation>
    </message>
    <message>
        <source>, nor any other</source>
        <translation>, auch keinen anderen</translation>
    </message>
    <message>
        <source>; it can start %1</source>
        <translation>; er kann %1 starten</translation>
    </message>
    <message>
        <source>the bus has no runners to start; install a package kinlet-provider-...</source>
        <translation>der Bus hat keine Runner, die er starten könnte; installieren Sie ein Paket kinlet-provider-...</translation>
    </message>
    <message>
        <source>%1 is running</source>
        <translation>%1 läuft</translation>
    </message>
    <message>
        <source>runners can be listed, or started: kinlet runners start [NAME], not &quot;%1&quot;</source>
        <translation>Runner lassen sich auflisten oder starten: kinlet runners start [NAME], nicht „%1“</translation>
    </message>
    <message>
        <source>there is no session bus: %1; dbus-run-session starts one</source>
        <translation>es gibt keinen Sitzungsbus: %1; dbus-run-session startet einen</translation>
    </message>
    <message>
        <source>the provider has given up</source>
        <translation>der Anbieter hat aufgegeben</translation>
    </message>
    <message>
        <source>waiting for providers to start</source>
        <translation>warte, bis die Anbieter gestartet sind</translation>
    </message>
    <message>
        <source>interrupted while providers were starting</source>
        <translation>abgebrochen, während Anbieter starteten</translation>
    </message>
    <message>
        <source>%1 did not start within %2 and is left out</source>
        <translation>%1 ist nicht binnen %2 gestartet und wird ausgelassen</translation>
    </message>
    <message>
        <source>no provider is left</source>
        <translation>es bleibt kein Anbieter übrig</translation>
    </message>
    <message>
        <source>unknown account &quot;%1&quot;</source>
        <translation>unbekanntes Konto „%1“</translation>
    </message>
    <message>
        <source>; the accounts are %1</source>
        <translation>; es gibt die Konten %1</translation>
    </message>
    <message>
        <source>waiting for %1</source>
        <translation>warte auf %1</translation>
    </message>
    <message>
        <source>interrupted; no answer yet from %1</source>
        <translation>abgebrochen; noch keine Antwort von %1</translation>
    </message>
    <message>
        <source>no answer within %1 from %2</source>
        <translation>binnen %1 keine Antwort von %2</translation>
    </message>
    <message>
        <source>no activities</source>
        <translation>keine Aktivitäten</translation>
    </message>
    <message>
        <source>Liked by</source>
        <translation>Das gefällt</translation>
    </message>
    <message>
        <source>1 minute ago</source>
        <translation>vor 1 Minute</translation>
    </message>
    <message numerus="yes">
        <source>%n minutes ago</source>
        <translation>
            <numerusform>vor %n Minute</numerusform>
            <numerusform>vor %n Minuten</numerusform>
        </translation>
    </message>
    <message>
        <source>in 1 minute</source>
        <translation>in 1 Minute</translation>
    </message>
    <message numerus="yes">
        <source>in %n minutes</source>
        <translation>
            <numerusform>in %n Minute</numerusform>
            <numerusform>in %n Minuten</numerusform>
        </translation>
    </message>
    <message>
        <source>1 hour ago</source>
        <translation>vor 1 Stunde</translation>
    </message>
    <message numerus="yes">
        <source>%n hours ago</source>
        <translation>
            <numerusform>vor %n Stunde</numerusform>
            <numerusform>vor %n Stunden</numerusform>
        </translation>
    </message>
    <message>
        <source>in 1 hour</source>
        <translation>in 1 Stunde</translation>
    </message>
    <message numerus="yes">
        <source>in %n hours</source>
        <translation>
            <numerusform>in %n Stunde</numerusform>
            <numerusform>in %n Stunden</numerusform>
        </translation>
    </message>
    <message>
        <source>1 day ago</source>
        <translation>vor 1 Tag</translation>
    </message>
    <message numerus="yes">
        <source>%n days ago</source>
        <translation>
            <numerusform>vor %n Tag</numerusform>
            <numerusform>vor %n Tagen</numerusform>
        </translation>
    </message>
    <message>
        <source>in 1 day</source>
        <translation>in 1 Tag</translation>
    </message>
    <message numerus="yes">
        <source>in %n days</source>
        <translation>
            <numerusform>in %n Tag</numerusform>
            <numerusform>in %n Tagen</numerusform>
        </translation>
    </message>
    <message>
        <source>just now</source>
        <translation>gerade eben</translation>
    </message>
    <message>
        <source>Accounts removed: %1</source>
        <translation>Konten entfernt: %1</translation>
    </message>
    <message>
        <source>Import started: %1, account %2</source>
        <translation>Import begonnen: %1, Konto %2</translation>
    </message>
    <message>
        <source>Import ended: %1, account %2: persons added %3, removed %4, merged %5</source>
        <translation>Import beendet: %1, Konto %2; Personen: %3 hinzugefügt, %4 entfernt, %5 zusammengeführt</translation>
    </message>
    <message>
        <source>Person</source>
        <translation>Person</translation>
    </message>
    <message>
        <source>watching</source>
        <translation>warte auf Neues</translation>
    </message>
    <message>
        <source>No plug-ins in %1</source>
        <translation>Keine Plug-ins in %1</translation>
    </message>
    <message>
        <source>there is no session bus: %1; &apos;dbus-run-session&apos; starts one</source>
        <translation>es gibt keinen Sitzungsbus: %1; „dbus-run-session“ startet einen</translation>
    </message>
    <message>
        <source>%1 is taken by another process</source>
        <translation>%1 ist von einem anderen Prozess belegt</translation>
    </message>
    <message>
        <source>the session bus went away</source>
        <translation>der Sitzungsbus ist verschwunden</translation>
    </message>
    <message>
        <source>Serves a provider plug-in on the session bus, as com.orvane.kinlet.NAME.

Ends with 0 when asked to by SIGTERM or SIGINT, 1 when the bus goes away, 2 after wrong
use, 3 without such a provider, 4 for a name that cannot be part of a bus name, 5
without a bus, 6 when the name is taken.

Plug-ins are looked for in KINLET_PLUGIN_PATH or /usr/lib/kinlet-1.0/plugins.</source>
        <translation>Stellt ein Anbieter-Plug-in auf dem Sitzungsbus bereit, als com.orvane.kinlet.NAME.

Endet mit 0 auf SIGTERM oder SIGINT hin, mit 1, wenn der Bus verschwindet, mit 2 nach
falscher Verwendung, mit 3, wenn es den Anbieter nicht gibt, mit 4 bei einem Namen, der
nicht Teil eines Busnamens sein kann, mit 5 ohne Bus, mit 6, wenn der Name belegt ist.

Plug-ins werden in KINLET_PLUGIN_PATH oder /usr/lib/kinlet-1.0/plugins gesucht.</translation>
    </message>
    <message>
        <source>Show the plug-ins that are found.</source>
        <translation>Die gefundenen Plug-ins anzeigen.</translation>
    </message>
    <message>
        <source>Leave when nobody has asked for that many seconds.</source>
        <translation>Enden, wenn so viele Sekunden lang keine Anfrage kam.</translation>
    </message>
    <message>
        <source>seconds</source>
        <translation>Sekunden</translation>
    </message>
    <message>
        <source>NAME|FILE.so</source>
        <translation>NAME|DATEI.so</translation>
    </message>
    <message>
        <source>The provider, by its name or by its file.</source>
        <translation>Der Anbieter, mit seinem Namen oder seiner Datei.</translation>
    </message>
    <message>
        <source>%1; see --help</source>
        <translation>%1; siehe --help</translation>
    </message>
    <message>
        <source>name one provider, or its file; see --help</source>
        <translation>geben Sie genau einen Anbieter oder seine Datei an; siehe --help</translation>
    </message>
    <message>
        <source>--idle-exit takes a number of seconds from 1 to %1</source>
        <translation>--idle-exit erwartet eine Anzahl von Sekunden von 1 bis %1</translation>
    </message>
    <message>
        <source>the provider&apos;s name &apos;%1&apos; cannot be part of a bus name: letters, digits and _ only, no digit first</source>
        <translation>der Name des Anbieters „%1“ kann nicht Teil eines Busnamens sein: nur Buchstaben, Ziffern und _, keine Ziffer am Anfang</translation>
    </message>
    <message>
        <source>%1 cannot be loaded: %2</source>
        <translation>%1 lässt sich nicht laden: %2</translation>
    </message>
    <message>
        <source>%1 is a plug-in, but no provider</source>
        <translation>%1 ist ein Plug-in, aber kein Anbieter</translation>
    </message>
    <message>
        <source>there is no provider named &apos;%1&apos; in %2; &apos;kinlet-runner --list&apos; shows those that there are</source>
        <translation>in %2 gibt es keinen Anbieter namens „%1“; „kinlet-runner --list“ zeigt, welche es gibt</translation>
    </message>
    <message>
        <source>%1, with other requests open</source>
        <translation>%1, während andere Anfragen offen waren,</translation>
    </message>
    <message>
        <source>asked %1, it gave the error %2 without a description</source>
        <translation>%1 gebeten, meldete er den Fehler %2 ohne Beschreibung</translation>
    </message>
    <message>
        <source>it does not answer when it is asked %1</source>
        <translation>er antwortet nicht, wenn er %1 gebeten wird</translation>
    </message>
    <message>
        <source>to take back the like of an activity that does not exist</source>
        <translation>um die Rücknahme des „Gefällt mir“ für eine Aktivität, die es nicht gibt,</translation>
    </message>
    <message>
        <source>asked %1, it ended with status Stopped</source>
        <translation>%1 gebeten, endete er mit dem Status Stopped</translation>
    </message>
    <message>
        <source>asked once %1, it answered %2 times</source>
        <translation>einmal %1 gebeten, antwortete er %2 Mal</translation>
    </message>
    <message>
        <source>asked %1, it reported progress after it had answered</source>
        <translation>%1 gebeten, meldete er nach der Antwort noch einen Fortschritt</translation>
    </message>
    <message>
        <source>asked %1, it set results after it had answered</source>
        <translation>%1 gebeten, setzte er nach der Antwort noch Ergebnisse</translation>
    </message>
    <message>
        <source>it did not answer within %1 s (--wait) when it was asked %2</source>
        <translation>er antwortete nicht binnen %1 s (--wait), als er %2 gebeten wurde</translation>
    </message>
    <message>
        <source>Call setRequestProgress(SocialDataRequest::Finished, errors) for every request, also when something fails. Hand what you do not support to KinletInterface::performRequest(), which refuses it. Applications have several requests open at a time. They wait for 60 seconds: --wait 60 waits for a slow network as long.</source>
        <translation>Für jede Anfrage setRequestProgress(SocialDataRequest::Finished, errors) aufrufen, auch wenn etwas scheitert. Was nicht unterstützt wird, an KinletInterface::performRequest() weitergeben; das lehnt es ab. Bei Anwendungen sind mehrere Anfragen zugleich offen. Sie warten 60 Sekunden lang: --wait 60 wartet auf ein langsames Netzwerk ebenso lange.</translation>
    </message>
    <message>
        <source>Give each KinletError a description for people: what failed, and what to do. Only UnsupportedRequest, PostFailed and LikeFailed say enough by themselves.</source>
        <translation>Jedem KinletError eine Beschreibung für Menschen geben: was gescheitert ist und was zu tun ist. Nur UnsupportedRequest, PostFailed und LikeFailed sagen von sich aus genug.</translation>
    </message>
    <message>
        <source>asked for %1 after a new start, it gave other ids</source>
        <translation>nach einem neuen Start um %1 gebeten, lieferte er andere Ids</translation>
    </message>
    <message>
        <source>asked %1, it gave some of &quot;%2&quot;</source>
        <translation>%1 gebeten, lieferte er welche von „%2“</translation>
    </message>
    <message>
        <source>asked %1, it gave none of &quot;%2&quot;</source>
        <translation>%1 gebeten, lieferte er keine von „%2“</translation>
    </message>
    <message>
        <source>it gave no records</source>
        <translation>er lieferte keine Datensätze</translation>
    </message>
    <message>
        <source>Take ids from the network, or derive them from what does not change; never from a counter, a pointer or chance. No two records of an account share one.</source>
        <translation>Ids aus dem Netzwerk übernehmen oder aus etwas ableiten, das sich nicht ändert; nie aus einem Zähler, einem Zeiger oder dem Zufall. Keine zwei Datensätze eines Kontos haben dieselbe.</translation>
    </message>
    <message>
        <source>Unless performOnAccountsFilter() is empty, answer only with what belongs to the accounts that it names, and with all that belongs to them.</source>
        <translation>Wenn performOnAccountsFilter() nicht leer ist, nur mit dem antworten, was zu den genannten Konten gehört, und mit allem, was zu ihnen gehört.</translation>
    </message>
    <message>
        <source>asked for activities before %1, it gave none</source>
        <translation>um Aktivitäten vor %1 gebeten, lieferte er keine</translation>
    </message>
    <message>
        <source>asked for activities after %1, it gave none</source>
        <translation>um Aktivitäten nach %1 gebeten, lieferte er keine</translation>
    </message>
    <message>
        <source>for activities without a limit</source>
        <translation>um Aktivitäten ohne Grenze</translation>
    </message>
    <message>
        <source>asked for activities without a limit (0), it gave none</source>
        <translation>um Aktivitäten ohne Grenze (0) gebeten, lieferte er keine</translation>
    </message>
    <message>
        <source>asked %1, it gave none</source>
        <translation>%1 gebeten, lieferte er keine</translation>
    </message>
    <message>
        <source>it answers at once or never, which leaves nothing to cancel</source>
        <translation>er antwortet sofort oder nie, sodass nichts abzubrechen bleibt</translation>
    </message>
    <message>
        <source>asked again, it answered at once</source>
        <translation>noch einmal gebeten, antwortete er sofort</translation>
    </message>
    <message>
        <source>init() held up the event loop for %1 s</source>
        <translation>init() hielt die Ereignisschleife %1 s lang auf</translation>
    </message>
    <message>
        <source>asked %1, it held up the event loop for %2 s</source>
        <translation>%1 gebeten, hielt er die Ereignisschleife %2 s lang auf</translation>
    </message>
    <message>
        <source>asked %1, it held up the event loop for %2 s in cancelRequest()</source>
        <translation>%1 gebeten, hielt er die Ereignisschleife in cancelRequest() %2 s lang auf</translation>
    </message>
    <message>
        <source>the bound is %1 s (--pause)</source>
        <translation>die Grenze liegt bei %1 s (--pause)</translation>
    </message>
    <message>
        <source>Return from performRequest() at once and answer later: with the signals of QNetworkAccessManager, in small steps from a QTimer, or from a thread that hands the answer back. The same goes for init() and cancelRequest().</source>
        <translation>Aus performRequest() sofort zurückkehren und später antworten: mit den Signalen von QNetworkAccessManager, in kleinen Schritten mit einem QTimer oder aus einem Thread, der die Antwort zurückgibt. Auch init() und cancelRequest() kehren sofort zurück.</translation>
    </message>
    <message>
        <source>its newest activity does not say with &quot;IsLikedByMe&quot; whether it is liked, so that this could not be restored</source>
        <translation>seine neueste Aktivität sagt nicht mit „IsLikedByMe“, ob sie gefällt, sodass sich das nicht wiederherstellen ließe</translation>
    </message>
    <message>
        <source>the check could not be started: %1</source>
        <translation>die Prüfung ließ sich nicht starten: %1</translation>
    </message>
    <message>
        <source>the folder has no name</source>
        <translation>der Ordner hat keinen Namen</translation>
    </message>
</context>
</TS>
