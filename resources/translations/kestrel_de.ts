<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>kestrel::CleanUpWindow</name>
    <message>
        <source>Clean Up Playlists</source>
        <translation>Wiedergabelisten aufräumen</translation>
    </message>
    <message>
        <source>About this window</source>
        <translation>Über dieses Fenster</translation>
    </message>
    <message>
        <source>These playlists list a track more than once. The first entry of each track stays, the later ones are deleted from the playlists that are checked; no track leaves the library.</source>
        <translation>Diese Wiedergabelisten führen einen Titel mehrfach auf. Der erste Eintrag jedes Titels bleibt, die späteren werden aus den angekreuzten Wiedergabelisten gelöscht; kein Titel verlässt die Bibliothek.</translation>
    </message>
    <message>
        <source>Playlist</source>
        <translation>Wiedergabeliste</translation>
    </message>
    <message>
        <source>Entries</source>
        <translation>Einträge</translation>
    </message>
    <message>
        <source>To Be Deleted</source>
        <translation>Zu löschen</translation>
    </message>
    <message>
        <source>Playlists that list a track more than once</source>
        <translation>Wiedergabelisten, die einen Titel mehrfach aufführen</translation>
    </message>
    <message>
        <source>Selected playlist</source>
        <translation>Ausgewählte Wiedergabeliste</translation>
    </message>
    <message>
        <source>At</source>
        <translation>Stelle</translation>
    </message>
    <message>
        <source>Entry to Be Deleted</source>
        <translation>Zu löschender Eintrag</translation>
    </message>
    <message>
        <source>Because</source>
        <translation>Grund</translation>
    </message>
    <message>
        <source>Entries to be deleted</source>
        <translation>Zu löschende Einträge</translation>
    </message>
    <message>
        <source>What is left out</source>
        <translation>Was ausgelassen wird</translation>
    </message>
    <message>
        <source>What is chosen</source>
        <translation>Was angekreuzt ist</translation>
    </message>
    <message>
        <source>State of the scan</source>
        <translation>Stand der Durchsicht</translation>
    </message>
    <message>
        <source>Re&amp;veal</source>
        <translation>An&amp;zeigen</translation>
    </message>
    <message>
        <source>Show the playlist in the music application</source>
        <translation>Die Wiedergabeliste im Musikprogramm anzeigen</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Abbrechen</translation>
    </message>
    <message>
        <source>&amp;OK</source>
        <translation>&amp;OK</translation>
    </message>
    <message>
        <source>The playlists could not be looked through.</source>
        <translation>Die Wiedergabelisten konnten nicht durchgesehen werden.</translation>
    </message>
    <message>
        <source>No playlist that the outline shows lists a track more than once.</source>
        <translation>Keine der angezeigten Wiedergabelisten führt einen Titel mehrfach auf.</translation>
    </message>
    <message>
        <source>%1 of %2 playlists chosen; entries to be deleted: %3</source>
        <translation>%1 von %2 Wiedergabelisten angekreuzt; zu löschende Einträge: %3</translation>
    </message>
    <message>
        <source>Select one playlist to see what is deleted from it.</source>
        <translation>Wählen Sie eine Wiedergabeliste aus, um zu sehen, was aus ihr gelöscht wird.</translation>
    </message>
    <message>
        <source>“%1”: entries to be deleted: %2 of %3</source>
        <translation>„%1“: zu löschende Einträge: %2 von %3</translation>
    </message>
    <message>
        <source>Deleting repeated entries…</source>
        <translation>Mehrfache Einträge werden gelöscht…</translation>
    </message>
</context>
<context>
    <name>kestrel::Criteria</name>
    <message>
        <source>name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>artist</source>
        <translation>Interpret</translation>
    </message>
    <message>
        <source>album</source>
        <translation>Album</translation>
    </message>
    <message>
        <source>album artist</source>
        <translation>Albuminterpret</translation>
    </message>
    <message>
        <source>composer</source>
        <translation>Komponist</translation>
    </message>
    <message>
        <source>genre</source>
        <translation>Genre</translation>
    </message>
    <message>
        <source>grouping</source>
        <translation>Werkgruppe</translation>
    </message>
    <message>
        <source>year</source>
        <translation>Jahr</translation>
    </message>
    <message>
        <source>track number</source>
        <translation>Titelnummer</translation>
    </message>
    <message>
        <source>disc number</source>
        <translation>CD-Nummer</translation>
    </message>
    <message>
        <source>kind</source>
        <translation>Art</translation>
    </message>
    <message>
        <source>bit rate</source>
        <translation>Bitrate</translation>
    </message>
    <message>
        <source>beats per minute</source>
        <translation>Schläge pro Minute</translation>
    </message>
    <message>
        <source>size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>file name</source>
        <translation>Dateiname</translation>
    </message>
    <message>
        <source>comments</source>
        <translation>Kommentare</translation>
    </message>
    <message>
        <source>time</source>
        <translation>Spieldauer</translation>
    </message>
</context>
<context>
    <name>kestrel::DecisionPane</name>
    <message>
        <source>Songs match by</source>
        <translation>Titel gleichen sich in</translation>
    </message>
    <message>
        <source>&amp;More fields</source>
        <translation>Weitere Fe&amp;lder</translation>
    </message>
    <message>
        <source>This criterion makes every search come back empty. Untick it and use File Name.</source>
        <translation>Mit diesem Kriterium bleibt jede Suche ohne Ergebnis. Entfernen Sie das Häkchen und verwenden Sie „Dateiname“.</translation>
    </message>
    <message>
        <source>&amp;Time</source>
        <translation>S&amp;pieldauer</translation>
    </message>
    <message>
        <source>exactly the same</source>
        <translation>genau gleich</translation>
    </message>
    <message>
        <source>within </source>
        <comment>seconds</comment>
        <translation>± </translation>
    </message>
    <message>
        <source>Largest difference of playing times in seconds</source>
        <translation>Größter Unterschied der Spieldauern in Sekunden</translation>
    </message>
    <message>
        <source>Match &amp;case</source>
        <translation>&amp;Groß-/Kleinschreibung beachten</translation>
    </message>
    <message>
        <source>Capitals and small letters differ</source>
        <translation>Groß- und Kleinbuchstaben gelten als verschieden</translation>
    </message>
    <message>
        <source> second</source>
        <translation> Sekunde</translation>
    </message>
    <message>
        <source> seconds</source>
        <translation> Sekunden</translation>
    </message>
    <message>
        <source>Keep the one with</source>
        <translation>Behalten wird der Titel mit</translation>
    </message>
    <message>
        <source>Folder of the files to keep</source>
        <translation>Ordner der Dateien, die behalten werden</translation>
    </message>
    <message>
        <source>any folder</source>
        <translation>beliebiger Ordner</translation>
    </message>
    <message>
        <source>…</source>
        <translation>…</translation>
    </message>
    <message>
        <source>Choose the folder</source>
        <translation>Ordner auswählen</translation>
    </message>
    <message>
        <source>Choose among</source>
        <translation>Auswählen unter</translation>
    </message>
    <message>
        <source>File t&amp;ype</source>
        <translation>Dateit&amp;yp</translation>
    </message>
    <message>
        <source>File type</source>
        <translation>Dateityp</translation>
    </message>
    <message>
        <source>&amp;Bit rate</source>
        <translation>Bit&amp;rate</translation>
    </message>
    <message>
        <source>Counts only together with a file type</source>
        <translation>Zählt nur zusammen mit einem Dateityp</translation>
    </message>
    <message>
        <source>Bit rate</source>
        <translation>Bitrate</translation>
    </message>
    <message>
        <source>Leave a group &amp;undecided rather
than choose at random</source>
        <translation>Gruppe lieber &amp;unentschieden
lassen als zufällig wählen</translation>
    </message>
    <message>
        <source>A tick marks</source>
        <translation>Ein Häkchen kennzeichnet</translation>
    </message>
    <message>
        <source>the track to keep</source>
        <translation>den Titel, der behalten wird</translation>
    </message>
    <message>
        <source>the tracks to act on</source>
        <translation>die Titel, die bearbeitet werden</translation>
    </message>
    <message>
        <source>Tick another field: times that lie near each other are no match by themselves.</source>
        <translation>Kreuzen Sie ein weiteres Feld an: Ähnliche Spieldauern allein machen noch kein Duplikat.</translation>
    </message>
    <message>
        <source>Tick a field that duplicates share.</source>
        <translation>Kreuzen Sie ein Feld an, in dem Duplikate übereinstimmen.</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Artist</source>
        <translation>Interpret</translation>
    </message>
    <message>
        <source>Album</source>
        <translation>Album</translation>
    </message>
    <message>
        <source>Album Artist</source>
        <translation>Albuminterpret</translation>
    </message>
    <message>
        <source>Composer</source>
        <translation>Komponist</translation>
    </message>
    <message>
        <source>Genre</source>
        <translation>Genre</translation>
    </message>
    <message>
        <source>Grouping</source>
        <translation>Werkgruppe</translation>
    </message>
    <message>
        <source>Year</source>
        <translation>Jahr</translation>
    </message>
    <message>
        <source>Track Number</source>
        <translation>Titelnummer</translation>
    </message>
    <message>
        <source>Disc Number</source>
        <translation>CD-Nummer</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>Art</translation>
    </message>
    <message>
        <source>Bit Rate</source>
        <translation>Bitrate</translation>
    </message>
    <message>
        <source>Beats per Minute</source>
        <translation>Schläge pro Minute</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>File Name</source>
        <translation>Dateiname</translation>
    </message>
    <message>
        <source>Comments</source>
        <translation>Kommentare</translation>
    </message>
</context>
<context>
    <name>kestrel::EmptyPage</name>
    <message>
        <source>%1 and %2</source>
        <translation>%1 und %2</translation>
    </message>
    <message>
        <source>Find the duplicates in your music library</source>
        <translation>Finden Sie die Duplikate in Ihrer Musikbibliothek</translation>
    </message>
    <message>
        <source>Open the library document that your music application has exported, or drag it here. Nothing is changed until you say so.</source>
        <translation>Öffnen Sie das Bibliotheksdokument, das Ihr Musikprogramm exportiert hat, oder ziehen Sie es hierher. Es wird nichts geändert, bevor Sie es veranlassen.</translation>
    </message>
    <message>
        <source>&amp;Open a Library Document…</source>
        <translation>Bibliotheksdokument &amp;öffnen…</translation>
    </message>
    <message>
        <source>Try the &amp;Demo Library</source>
        <translation>De&amp;mo-Bibliothek ausprobieren</translation>
    </message>
    <message>
        <source>Recent libraries</source>
        <translation>Zuletzt geöffnete Bibliotheken</translation>
    </message>
    <message>
        <source>Looking for duplicates</source>
        <translation>Duplikate werden gesucht</translation>
    </message>
    <message>
        <source>Press Esc to stop.</source>
        <translation>Mit Esc halten Sie die Suche an.</translation>
    </message>
    <message>
        <source>Ready to search %1</source>
        <translation>Bereit, in „%1“ zu suchen</translation>
    </message>
    <message>
        <source>Choose on the left what duplicates have in common and which of them to keep.</source>
        <translation>Legen Sie links fest, worin Duplikate übereinstimmen und welches davon behalten wird.</translation>
    </message>
    <message>
        <source>&amp;Find Duplicates</source>
        <translation>Duplikate &amp;finden</translation>
    </message>
    <message>
        <source>Nothing to match by</source>
        <translation>Kein Feld zum Vergleichen</translation>
    </message>
    <message>
        <source>Tick on the left at least one field that duplicates share.</source>
        <translation>Kreuzen Sie links mindestens ein Feld an, in dem Duplikate übereinstimmen.</translation>
    </message>
    <message>
        <source>No duplicates by %1 in %2.</source>
        <translation>Keine Duplikate nach %1 in „%2“.</translation>
    </message>
    <message>
        <source>Try fewer criteria.</source>
        <translation>Versuchen Sie es mit weniger Kriterien.</translation>
    </message>
    <message>
        <source>“Filename” finds nothing</source>
        <translation>„Filename“ findet nichts</translation>
    </message>
    <message>
        <source>A search with the criterion “Filename” always ends empty: it compares a field that no track has. “File Name” compares the names of files.</source>
        <translation>Eine Suche mit dem Kriterium „Filename“ bleibt immer ohne Ergebnis: Es vergleicht ein Feld, das kein Titel hat. „Dateiname“ vergleicht die Namen der Dateien.</translation>
    </message>
    <message>
        <source>Use File &amp;Name Instead</source>
        <translation>Stattdessen Datei&amp;name verwenden</translation>
    </message>
    <message>
        <source>The search was stopped</source>
        <translation>Die Suche wurde angehalten</translation>
    </message>
    <message>
        <source>Nothing was changed.</source>
        <translation>Es wurde nichts geändert.</translation>
    </message>
</context>
<context>
    <name>kestrel::EntryModel</name>
    <message>
        <source>Then listed at %1</source>
        <translation>Danach an Stelle %1</translation>
    </message>
    <message>
        <source>The same track at %1 stays</source>
        <translation>Derselbe Titel an Stelle %1 bleibt</translation>
    </message>
    <message>
        <source>Unknown track %1</source>
        <translation>Unbekannter Titel %1</translation>
    </message>
    <message>
        <source>%1 kbps</source>
        <translation>%1 kbit/s</translation>
    </message>
    <message>
        <source>(not there)</source>
        <translation>(nicht vorhanden)</translation>
    </message>
    <message>
        <source>(deleted)</source>
        <translation>(gelöscht)</translation>
    </message>
</context>
<context>
    <name>kestrel::HistoryWindow</name>
    <message>
        <source>Replaylist</source>
        <translation>Replaylist</translation>
    </message>
    <message>
        <source>Clean-up</source>
        <translation>Aufräumen</translation>
    </message>
    <message>
        <source>Move to trash</source>
        <translation>In den Papierkorb verschieben</translation>
    </message>
    <message>
        <source>Undo of run %1</source>
        <translation>Rückgängig: Durchlauf %1</translation>
    </message>
    <message>
        <source>↶ Taken back</source>
        <translation>↶ Zurückgenommen</translation>
    </message>
    <message>
        <source>… Running</source>
        <translation>… Läuft</translation>
    </message>
    <message>
        <source>✓ Done, partly taken back</source>
        <translation>✓ Erledigt, teilweise zurückgenommen</translation>
    </message>
    <message>
        <source>✓ Done</source>
        <translation>✓ Erledigt</translation>
    </message>
    <message>
        <source>■ Stopped before its end</source>
        <translation>■ Vorzeitig angehalten</translation>
    </message>
    <message>
        <source>✗ Failed, nothing changed</source>
        <translation>✗ Fehlgeschlagen, nichts geändert</translation>
    </message>
    <message>
        <source>⚠ Broke off</source>
        <translation>⚠ Abgebrochen</translation>
    </message>
    <message>
        <source>As the run left it</source>
        <translation>Wie vom Durchlauf hinterlassen</translation>
    </message>
    <message>
        <source>Deleted since; undoing makes it anew</source>
        <translation>Seither gelöscht; Rückgängig legt sie neu an</translation>
    </message>
    <message>
        <source>Not changed by the run</source>
        <translation>Vom Durchlauf nicht geändert</translation>
    </message>
    <message>
        <source>Taken back</source>
        <translation>Zurückgenommen</translation>
    </message>
    <message>
        <source>As it was before the run</source>
        <translation>Wie vor dem Durchlauf</translation>
    </message>
    <message>
        <source>⚠ Changed since: %1</source>
        <translation>⚠ Seither geändert: %1</translation>
    </message>
    <message>
        <source>History</source>
        <translation>Verlauf</translation>
    </message>
    <message>
        <source>Run</source>
        <translation>Durchlauf</translation>
    </message>
    <message>
        <source>When</source>
        <translation>Wann</translation>
    </message>
    <message>
        <source>What</source>
        <translation>Was</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Zustand</translation>
    </message>
    <message>
        <source>Runs, latest first</source>
        <translation>Durchläufe, die neuesten zuerst</translation>
    </message>
    <message>
        <source>What was taken back</source>
        <translation>Was zurückgenommen wurde</translation>
    </message>
    <message>
        <source>&amp;Undo Run</source>
        <translation>Durchlauf &amp;rückgängig machen</translation>
    </message>
    <message>
        <source>Undo This &amp;Playlist</source>
        <translation>Diese &amp;Wiedergabeliste zurücknehmen</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>S&amp;chließen</translation>
    </message>
    <message>
        <source>Selected run</source>
        <translation>Ausgewählter Durchlauf</translation>
    </message>
    <message>
        <source>Reading the history…</source>
        <translation>Der Verlauf wird gelesen…</translation>
    </message>
    <message>
        <source>Playlist or File</source>
        <translation>Wiedergabeliste oder Datei</translation>
    </message>
    <message>
        <source>Today</source>
        <translation>Heute</translation>
    </message>
    <message>
        <source>What the run changed</source>
        <translation>Was der Durchlauf geändert hat</translation>
    </message>
    <message>
        <source>Selected playlist</source>
        <translation>Ausgewählte Wiedergabeliste</translation>
    </message>
    <message>
        <source>&amp;Only what changed</source>
        <translation>&amp;Nur Geändertes</translation>
    </message>
    <message>
        <source>At</source>
        <translation>Stelle</translation>
    </message>
    <message>
        <source>Before</source>
        <translation>Vorher</translation>
    </message>
    <message>
        <source>After</source>
        <translation>Nachher</translation>
    </message>
    <message>
        <source>Entries before and after</source>
        <translation>Einträge vorher und nachher</translation>
    </message>
    <message>
        <source>The history cannot be shown.</source>
        <translation>Der Verlauf kann nicht angezeigt werden.</translation>
    </message>
    <message>
        <source>Nothing has been changed in this library yet.</source>
        <translation>In dieser Bibliothek wurde noch nichts geändert.</translation>
    </message>
    <message>
        <source>The run cannot be shown.</source>
        <translation>Der Durchlauf kann nicht angezeigt werden.</translation>
    </message>
    <message>
        <source>Run %1, %2: %3</source>
        <translation>Durchlauf %1, %2: %3</translation>
    </message>
    <message>
        <source>Kestrel ended in the middle of it. What it had done by then is found by looking at the library:</source>
        <translation>Kestrel wurde mittendrin beendet. Was bis dahin geschehen war, ergibt sich aus dem Zustand der Bibliothek:</translation>
    </message>
    <message>
        <source>“%1”: entries before: %2, after: %3</source>
        <translation>„%1“: Einträge vorher: %2, nachher: %3</translation>
    </message>
    <message>
        <source>“%1” was deleted with another playlist of its name</source>
        <translation>„%1“ wurde mit einer anderen Wiedergabeliste gleichen Namens gelöscht</translation>
    </message>
    <message>
        <source>, in “%1”</source>
        <translation>, in „%1“</translation>
    </message>
    <message>
        <source>Taking back…</source>
        <translation>Wird zurückgenommen…</translation>
    </message>
</context>
<context>
    <name>kestrel::InfoPane</name>
    <message>
        <source>Selected track</source>
        <translation>Ausgewählter Titel</translation>
    </message>
    <message>
        <source>Why it is kept</source>
        <translation>Warum er behalten wird</translation>
    </message>
    <message>
        <source>Playlists that hold it</source>
        <translation>Wiedergabelisten, die ihn enthalten</translation>
    </message>
    <message>
        <source>Track information</source>
        <translation>Angaben zum Titel</translation>
    </message>
    <message numerus="yes">
        <source>%n tracks are selected.</source>
        <translation>
            <numerusform>%n Titel ist ausgewählt.</numerusform>
            <numerusform>%n Titel sind ausgewählt.</numerusform>
        </translation>
    </message>
    <message>
        <source>Select a track to see why it is kept or not.</source>
        <translation>Wählen Sie einen Titel aus, um zu sehen, warum er behalten wird oder nicht.</translation>
    </message>
    <message>
        <source>◆ Kept because: %1</source>
        <translation>◆ Wird behalten, Grund: %1</translation>
    </message>
    <message>
        <source>Not kept. The group&apos;s keeper: %1</source>
        <translation>Wird nicht behalten. Der behaltene Titel der Gruppe: %1</translation>
    </message>
    <message>
        <source>In no playlist.</source>
        <translation>In keiner Wiedergabeliste.</translation>
    </message>
    <message>
        <source>In %1</source>
        <translation>In %1</translation>
    </message>
    <message>
        <source>Group</source>
        <translation>Gruppe</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Artist</source>
        <translation>Interpret</translation>
    </message>
    <message>
        <source>Album</source>
        <translation>Album</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Dauer</translation>
    </message>
    <message>
        <source>Bit Rate</source>
        <translation>Bitrate</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>Art</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Plays</source>
        <translation>Wiedergaben</translation>
    </message>
    <message>
        <source>Rating</source>
        <translation>Wertung</translation>
    </message>
    <message>
        <source>Date Added</source>
        <translation>Hinzugefügt</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Track</source>
        <translation>Titelnr.</translation>
    </message>
    <message>
        <source>Disc</source>
        <translation>CD</translation>
    </message>
    <message>
        <source>Album Artist</source>
        <translation>Albuminterpret</translation>
    </message>
    <message>
        <source>Composer</source>
        <translation>Komponist</translation>
    </message>
    <message>
        <source>Genre</source>
        <translation>Genre</translation>
    </message>
    <message>
        <source>Year</source>
        <translation>Jahr</translation>
    </message>
    <message>
        <source>Grouping</source>
        <translation>Werkgruppe</translation>
    </message>
    <message>
        <source>Comments</source>
        <translation>Kommentare</translation>
    </message>
    <message>
        <source>Sample Rate</source>
        <translation>Abtastrate</translation>
    </message>
    <message>
        <source>BPM</source>
        <translation>BPM</translation>
    </message>
    <message>
        <source>Skips</source>
        <translation>Übersprungen</translation>
    </message>
    <message>
        <source>Last Played</source>
        <translation>Zuletzt gespielt</translation>
    </message>
    <message>
        <source>Last Skipped</source>
        <translation>Zuletzt übersprungen</translation>
    </message>
    <message>
        <source>Date Modified</source>
        <translation>Geändert</translation>
    </message>
    <message>
        <source>Compilation</source>
        <translation>Compilation</translation>
    </message>
    <message>
        <source>Purchased</source>
        <translation>Gekauft</translation>
    </message>
    <message>
        <source>Protected</source>
        <translation>Geschützt</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>Cloud Status</source>
        <translation>Cloud-Status</translation>
    </message>
    <message>
        <source>File Name</source>
        <translation>Dateiname</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>Ort</translation>
    </message>
    <message>
        <source>Persistent ID</source>
        <translation>Dauerhafte ID</translation>
    </message>
    <message>
        <source>Work</source>
        <translation>Werk</translation>
    </message>
    <message>
        <source>Movement</source>
        <translation>Satz</translation>
    </message>
    <message>
        <source>Movement Number</source>
        <translation>Satznummer</translation>
    </message>
    <message>
        <source>Work and Movement</source>
        <translation>Werk und Satz</translation>
    </message>
    <message>
        <source>Work Number</source>
        <translation>Werknummer</translation>
    </message>
    <message>
        <source>Show</source>
        <translation>Sendung</translation>
    </message>
    <message>
        <source>Season</source>
        <translation>Staffel</translation>
    </message>
    <message>
        <source>Episode</source>
        <translation>Folge</translation>
    </message>
</context>
<context>
    <name>kestrel::LogWindow</name>
    <message>
        <source>Log</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>Log lines</source>
        <translation>Zeilen des Protokolls</translation>
    </message>
</context>
<context>
    <name>kestrel::MainWindow</name>
    <message>
        <source>Duplicates</source>
        <translation>Duplikate</translation>
    </message>
    <message>
        <source>&amp;Decide</source>
        <translation>&amp;Entscheiden</translation>
    </message>
    <message>
        <source>&amp;Playlists</source>
        <translation>&amp;Wiedergabelisten</translation>
    </message>
    <message>
        <source>Result</source>
        <translation>Ergebnis</translation>
    </message>
    <message>
        <source>Progress of the search</source>
        <translation>Fortschritt der Suche</translation>
    </message>
    <message>
        <source>Progress of choosing keepers</source>
        <translation>Fortschritt der Auswahl der behaltenen Titel</translation>
    </message>
    <message>
        <source>Progress of reading playlists</source>
        <translation>Fortschritt beim Lesen der Wiedergabelisten</translation>
    </message>
    <message>
        <source>%1 tracks in %2 groups · %3 to act on, %4</source>
        <translation>%1 Titel in %2 Gruppen · %3 zu bearbeiten, %4</translation>
    </message>
    <message>
        <source> · %1 groups without keeper</source>
        <translation> · Gruppen ohne behaltenen Titel: %1</translation>
    </message>
    <message>
        <source> · %1 groups with several</source>
        <translation> · mit mehreren: %1</translation>
    </message>
    <message>
        <source>&amp;Open Library Document…</source>
        <translation>Bibliotheksdokument &amp;öffnen…</translation>
    </message>
    <message>
        <source>Open &amp;Demo Library</source>
        <translation>&amp;Demo-Bibliothek öffnen</translation>
    </message>
    <message>
        <source>&amp;Refresh Library</source>
        <translation>Bibliothek neu &amp;laden</translation>
    </message>
    <message>
        <source>Refresh &amp;Playlists</source>
        <translation>&amp;Wiedergabelisten neu laden</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>&amp;Find Duplicates</source>
        <translation>Duplikate &amp;finden</translation>
    </message>
    <message>
        <source>&amp;Stop Searching (Esc)</source>
        <translation>&amp;Suche anhalten (Esc)</translation>
    </message>
    <message>
        <source>Find Duplicates at S&amp;tart</source>
        <translation>Beim S&amp;tart Duplikate finden</translation>
    </message>
    <message>
        <source>&amp;Replaylist…</source>
        <translation>&amp;Replaylist…</translation>
    </message>
    <message>
        <source>Replaylist the &amp;Selection…</source>
        <translation>Replaylist für die &amp;Auswahl…</translation>
    </message>
    <message>
        <source>&amp;Clean Up…</source>
        <translation>Aufrä&amp;umen…</translation>
    </message>
    <message>
        <source>&amp;Trash…</source>
        <translation>&amp;Papierkorb…</translation>
    </message>
    <message>
        <source>&amp;History…</source>
        <translation>&amp;Verlauf…</translation>
    </message>
    <message>
        <source>F&amp;ilter</source>
        <translation>&amp;Filtern</translation>
    </message>
    <message>
        <source>Select &amp;All</source>
        <translation>&amp;Alles auswählen</translation>
    </message>
    <message>
        <source>Show &amp;Selection</source>
        <translation>Aus&amp;wahl anzeigen</translation>
    </message>
    <message>
        <source>Make &amp;Keeper (K)</source>
        <translation>Als einzigen &amp;behalten (K)</translation>
    </message>
    <message>
        <source>Show in &amp;Folder</source>
        <translation>Im &amp;Ordner anzeigen</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>Copy &amp;Path</source>
        <translation>&amp;Pfad kopieren</translation>
    </message>
    <message>
        <source>Add to Play&amp;list…</source>
        <translation>&amp;Zu Wiedergabeliste hinzufügen…</translation>
    </message>
    <message>
        <source>Move to &amp;Trash…</source>
        <translation>In den Papierkorb &amp;verschieben…</translation>
    </message>
    <message>
        <source>&amp;Log</source>
        <translation>&amp;Protokoll</translation>
    </message>
    <message>
        <source>&amp;Colours and Symbols</source>
        <translation>&amp;Farben und Symbole</translation>
    </message>
    <message>
        <source>&amp;About Kestrel</source>
        <translation>&amp;Über Kestrel</translation>
    </message>
    <message>
        <source>About Kestrel</source>
        <translation>Über Kestrel</translation>
    </message>
    <message>
        <source>&lt;h3&gt;Kestrel %1&lt;/h3&gt;&lt;p&gt;Finds the duplicate songs of a music library.&lt;/p&gt;</source>
        <translation>&lt;h3&gt;Kestrel %1&lt;/h3&gt;&lt;p&gt;Findet die doppelten Titel einer Musikbibliothek.&lt;/p&gt;</translation>
    </message>
    <message>
        <source>Search the chosen playlist for duplicates (Ctrl+D)</source>
        <translation>Die gewählte Wiedergabeliste nach Duplikaten durchsuchen (Strg+D)</translation>
    </message>
    <message>
        <source>Put keepers into the playlists that hold other copies (Ctrl+R)</source>
        <translation>Behaltene Titel in die Wiedergabelisten einsetzen, die andere Exemplare enthalten (Strg+R)</translation>
    </message>
    <message>
        <source>Find playlists that list a track more than once (Ctrl+U)</source>
        <translation>Wiedergabelisten finden, die einen Titel mehrfach aufführen (Strg+U)</translation>
    </message>
    <message>
        <source>Move the files of tracks that are not kept to the trash (Ctrl+Delete)</source>
        <translation>Dateien von Titeln, die nicht behalten werden, in den Papierkorb verschieben (Strg+Entf)</translation>
    </message>
    <message>
        <source>What was changed, and undoing it (Ctrl+H)</source>
        <translation>Was geändert wurde, und wie es rückgängig gemacht wird (Strg+H)</translation>
    </message>
    <message>
        <source>&amp;Library</source>
        <translation>&amp;Bibliothek</translation>
    </message>
    <message>
        <source>Open &amp;Recent</source>
        <translation>&amp;Zuletzt geöffnet</translation>
    </message>
    <message>
        <source>&amp;Duplicates</source>
        <translation>&amp;Duplikate</translation>
    </message>
    <message>
        <source>&amp;Track</source>
        <translation>&amp;Titel</translation>
    </message>
    <message>
        <source>Show in &amp;Playlist</source>
        <translation>In &amp;Wiedergabeliste anzeigen</translation>
    </message>
    <message>
        <source>In no playlist</source>
        <translation>In keiner Wiedergabeliste</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>&amp;Columns</source>
        <translation>&amp;Spalten</translation>
    </message>
    <message>
        <source>&amp;Appearance</source>
        <translation>&amp;Erscheinungsbild</translation>
    </message>
    <message>
        <source>Like the &amp;Desktop</source>
        <translation>&amp;Wie die Arbeitsumgebung</translation>
    </message>
    <message>
        <source>&amp;Light</source>
        <translation>&amp;Hell</translation>
    </message>
    <message>
        <source>D&amp;ark</source>
        <translation>&amp;Dunkel</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>Commands</source>
        <translation>Befehle</translation>
    </message>
    <message>
        <source>Library</source>
        <translation>Bibliothek</translation>
    </message>
    <message>
        <source>Playlist to search</source>
        <translation>Zu durchsuchende Wiedergabeliste</translation>
    </message>
    <message>
        <source>Look &amp;in </source>
        <translation>Suchen &amp;in </translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filtern</translation>
    </message>
    <message>
        <source>Filter the table by words</source>
        <translation>Die Tabelle nach Wörtern filtern</translation>
    </message>
    <message>
        <source>The outline does not show this playlist.</source>
        <translation>Die Übersicht zeigt diese Wiedergabeliste nicht.</translation>
    </message>
    <message>
        <source>Open Library Document</source>
        <translation>Bibliotheksdokument öffnen</translation>
    </message>
    <message>
        <source>Library documents (*.xml)</source>
        <translation>Bibliotheksdokumente (*.xml)</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>Alle Dateien (*)</translation>
    </message>
    <message numerus="yes">
        <source>Tracks added: %n.</source>
        <translation>
            <numerusform>%n Titel hinzugefügt.</numerusform>
            <numerusform>%n Titel hinzugefügt.</numerusform>
        </translation>
    </message>
    <message>
        <source>◆  the track that is kept: dark text
no ◆  a track to act on: grey text
☁  in the cloud, without a local file: blue text
⚠  the file is missing: red text
Stripes tell neighbouring groups apart while the table is sorted by group.</source>
        <translation>◆  der Titel, der behalten wird: dunkle Schrift
ohne ◆  ein Titel, der bearbeitet wird: graue Schrift
☁  in der Cloud, ohne lokale Datei: blaue Schrift
⚠  die Datei fehlt: rote Schrift
Streifen trennen benachbarte Gruppen, solange die Tabelle nach Gruppen sortiert ist.</translation>
    </message>
    <message>
        <source>Space ticks and unticks, K makes the track the only keeper of its group, Ctrl+F filters, F5 reads the library again, Esc stops a search.</source>
        <translation>Die Leertaste setzt und entfernt Häkchen, K behält von der Gruppe nur diesen Titel, Strg+F filtert, F5 liest die Bibliothek neu, Esc hält eine Suche an.</translation>
    </message>
    <message>
        <source>Colours and Symbols</source>
        <translation>Farben und Symbole</translation>
    </message>
    <message>
        <source>Colours and symbols of the table</source>
        <translation>Farben und Symbole der Tabelle</translation>
    </message>
</context>
<context>
    <name>kestrel::OutlineView</name>
    <message>
        <source>%1, warning: %2</source>
        <translation>%1, Warnung: %2</translation>
    </message>
</context>
<context>
    <name>kestrel::PairsTable</name>
    <message>
        <source>Non-Keeper</source>
        <translation>Nicht behalten</translation>
    </message>
    <message>
        <source>Keeper</source>
        <translation>Behalten</translation>
    </message>
    <message>
        <source>Non-keepers and their keepers</source>
        <translation>Nicht behaltene Titel und die behaltenen dazu</translation>
    </message>
    <message>
        <source>Double-click a non-keeper to show it in its playlist, a keeper to show it in the library</source>
        <translation>Doppelklicken Sie auf einen nicht behaltenen Titel, um ihn in seiner Wiedergabeliste zu sehen, auf einen behaltenen, um ihn in der Bibliothek zu sehen</translation>
    </message>
    <message>
        <source>Playlist</source>
        <translation>Wiedergabeliste</translation>
    </message>
    <message>
        <source>Keeper rule</source>
        <translation>Regel der Auswahl</translation>
    </message>
</context>
<context>
    <name>kestrel::PlaylistOutlineView</name>
    <message>
        <source>Playlist</source>
        <translation>Wiedergabeliste</translation>
    </message>
    <message>
        <source>Tracks</source>
        <translation>Titel</translation>
    </message>
    <message>
        <source>Playlists</source>
        <translation>Wiedergabelisten</translation>
    </message>
</context>
<context>
    <name>kestrel::PlaylistWindows</name>
    <message>
        <source>Working</source>
        <translation>In Arbeit</translation>
    </message>
</context>
<context>
    <name>kestrel::ProgressSheet</name>
    <message>
        <source>Reading the library</source>
        <translation>Die Bibliothek wird gelesen</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
</context>
<context>
    <name>kestrel::ReplaylistTexts</name>
    <message>
        <source>Replacing it would delete another playlist of the same name: %1.</source>
        <translation>Das Ersetzen würde eine andere Wiedergabeliste gleichen Namens löschen: %1.</translation>
    </message>
    <message>
        <source>Tracks that it will list more than once: %1.</source>
        <translation>Titel, die sie danach mehrfach aufführt: %1.</translation>
    </message>
    <message>
        <source>No playlist of yours holds a track that is not kept.</source>
        <translation>Keine Ihrer Wiedergabelisten enthält einen Titel, der nicht behalten wird.</translation>
    </message>
    <message>
        <source>%1 playlists will list tracks more than once; they are marked with ⚠.</source>
        <translation>Wiedergabelisten, die danach Titel mehrfach aufführen: %1; sie sind mit ⚠ gekennzeichnet.</translation>
    </message>
</context>
<context>
    <name>kestrel::ReplaylistWindow</name>
    <message>
        <source>Replaylist</source>
        <translation>Replaylist</translation>
    </message>
    <message>
        <source>Playlist</source>
        <translation>Wiedergabeliste</translation>
    </message>
    <message>
        <source>Entries</source>
        <translation>Einträge</translation>
    </message>
    <message>
        <source>To Be Replaced</source>
        <translation>Zu ersetzen</translation>
    </message>
    <message>
        <source>Playlists that hold tracks that are not kept</source>
        <translation>Wiedergabelisten mit Titeln, die nicht behalten werden</translation>
    </message>
    <message>
        <source>Check &amp;All</source>
        <translation>A&amp;lle ankreuzen</translation>
    </message>
    <message>
        <source>Check &amp;None</source>
        <translation>&amp;Keine ankreuzen</translation>
    </message>
    <message>
        <source>Re&amp;veal</source>
        <translation>An&amp;zeigen</translation>
    </message>
    <message>
        <source>Show the playlist in the music application</source>
        <translation>Die Wiedergabeliste im Musikprogramm anzeigen</translation>
    </message>
    <message>
        <source>Selected playlist</source>
        <translation>Ausgewählte Wiedergabeliste</translation>
    </message>
    <message>
        <source>At</source>
        <translation>Stelle</translation>
    </message>
    <message>
        <source>Now</source>
        <translation>Jetzt</translation>
    </message>
    <message>
        <source>Then</source>
        <translation>Danach</translation>
    </message>
    <message>
        <source>Because</source>
        <translation>Grund</translation>
    </message>
    <message>
        <source>Entries to be replaced</source>
        <translation>Zu ersetzende Einträge</translation>
    </message>
    <message>
        <source>About this window</source>
        <translation>Über dieses Fenster</translation>
    </message>
    <message>
        <source>Tracks that take part</source>
        <translation>Beteiligte Titel</translation>
    </message>
    <message>
        <source>Take A&amp;ll Tracks</source>
        <translation>Alle Titel &amp;nehmen</translation>
    </message>
    <message>
        <source>Warnings and what is left out</source>
        <translation>Warnungen und was ausgelassen wird</translation>
    </message>
    <message>
        <source>What is chosen</source>
        <translation>Was angekreuzt ist</translation>
    </message>
    <message>
        <source>State of the survey</source>
        <translation>Stand der Durchsicht</translation>
    </message>
    <message>
        <source>Show &amp;Tracks</source>
        <translation>&amp;Titel einblenden</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Abbrechen</translation>
    </message>
    <message>
        <source>&amp;OK</source>
        <translation>&amp;OK</translation>
    </message>
    <message>
        <source>Hide &amp;Tracks</source>
        <translation>&amp;Titel ausblenden</translation>
    </message>
    <message>
        <source>The playlists could not be looked through.</source>
        <translation>Die Wiedergabelisten konnten nicht durchgesehen werden.</translation>
    </message>
    <message>
        <source>Only what is selected in the table takes part, which is %1 of its %2 tracks.</source>
        <translation>Nur was in der Tabelle ausgewählt ist, nimmt teil: %1 von %2 Titeln.</translation>
    </message>
    <message>
        <source>%1 of %2 playlists chosen; entries to be replaced: %3</source>
        <translation>%1 von %2 Wiedergabelisten angekreuzt; zu ersetzende Einträge: %3</translation>
    </message>
    <message>
        <source>“%1”: entries to be replaced: %2 of %3</source>
        <translation>„%1“: zu ersetzende Einträge: %2 von %3</translation>
    </message>
    <message>
        <source>“%1”: none of its tracks that are not kept has a keeper to go in</source>
        <translation>„%1“: zu keinem der Titel, die nicht behalten werden, gibt es einen behaltenen als Ersatz</translation>
    </message>
    <message>
        <source>Select one playlist to see what changes in it.</source>
        <translation>Wählen Sie eine Wiedergabeliste aus, um zu sehen, was sich in ihr ändert.</translation>
    </message>
    <message>
        <source>Replacing “%1” would delete: %2.</source>
        <translation>Das Ersetzen von „%1“ würde löschen: %2.</translation>
    </message>
    <message>
        <source>Playlists share their names with others, which would be deleted.</source>
        <translation>Einige Wiedergabelisten heißen wie andere, die dabei gelöscht würden.</translation>
    </message>
    <message>
        <source>Leave Them Out</source>
        <translation>Auslassen</translation>
    </message>
    <message>
        <source>Replace and Delete</source>
        <translation>Ersetzen und löschen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Putting keepers into the playlists…</source>
        <translation>Behaltene Titel werden in die Wiedergabelisten eingesetzt…</translation>
    </message>
</context>
<context>
    <name>kestrel::ResultTableModel</name>
    <message>
        <source>◆ Keeper</source>
        <translation>◆ Wird behalten</translation>
    </message>
    <message>
        <source>Not kept</source>
        <translation>Wird nicht behalten</translation>
    </message>
    <message>
        <source>
☁ In the cloud: there is no local file</source>
        <translation>
☁ In der Cloud: Es gibt keine lokale Datei</translation>
    </message>
    <message>
        <source>
⚠ The file is missing</source>
        <translation>
⚠ Die Datei fehlt</translation>
    </message>
    <message>
        <source>Ticks</source>
        <translation>Häkchen</translation>
    </message>
    <message>
        <source>Group</source>
        <translation>Gruppe</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Artist</source>
        <translation>Interpret</translation>
    </message>
    <message>
        <source>Album</source>
        <translation>Album</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Dauer</translation>
    </message>
    <message>
        <source>Bit Rate</source>
        <translation>Bitrate</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>Art</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Plays</source>
        <translation>Wiedergaben</translation>
    </message>
    <message>
        <source>Rating</source>
        <translation>Wertung</translation>
    </message>
    <message>
        <source>Date Added</source>
        <translation>Hinzugefügt</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Track</source>
        <translation>Titelnr.</translation>
    </message>
    <message>
        <source>Disc</source>
        <translation>CD</translation>
    </message>
    <message>
        <source>Album Artist</source>
        <translation>Albuminterpret</translation>
    </message>
    <message>
        <source>Composer</source>
        <translation>Komponist</translation>
    </message>
    <message>
        <source>Genre</source>
        <translation>Genre</translation>
    </message>
    <message>
        <source>Year</source>
        <translation>Jahr</translation>
    </message>
    <message>
        <source>Grouping</source>
        <translation>Werkgruppe</translation>
    </message>
    <message>
        <source>Comments</source>
        <translation>Kommentare</translation>
    </message>
    <message>
        <source>Sample Rate</source>
        <translation>Abtastrate</translation>
    </message>
    <message>
        <source>BPM</source>
        <translation>BPM</translation>
    </message>
    <message>
        <source>Skips</source>
        <translation>Übersprungen</translation>
    </message>
    <message>
        <source>Last Played</source>
        <translation>Zuletzt gespielt</translation>
    </message>
    <message>
        <source>Last Skipped</source>
        <translation>Zuletzt übersprungen</translation>
    </message>
    <message>
        <source>Date Modified</source>
        <translation>Geändert</translation>
    </message>
    <message>
        <source>Compilation</source>
        <translation>Compilation</translation>
    </message>
    <message>
        <source>Purchased</source>
        <translation>Gekauft</translation>
    </message>
    <message>
        <source>Protected</source>
        <translation>Geschützt</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>Cloud Status</source>
        <translation>Cloud-Status</translation>
    </message>
    <message>
        <source>File Name</source>
        <translation>Dateiname</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>Ort</translation>
    </message>
    <message>
        <source>Persistent ID</source>
        <translation>Dauerhafte ID</translation>
    </message>
    <message>
        <source>Work</source>
        <translation>Werk</translation>
    </message>
    <message>
        <source>Movement</source>
        <translation>Satz</translation>
    </message>
    <message>
        <source>Movement Number</source>
        <translation>Satznummer</translation>
    </message>
    <message>
        <source>Work and Movement</source>
        <translation>Werk und Satz</translation>
    </message>
    <message>
        <source>Work Number</source>
        <translation>Werknummer</translation>
    </message>
    <message>
        <source>Show</source>
        <translation>Sendung</translation>
    </message>
    <message>
        <source>Season</source>
        <translation>Staffel</translation>
    </message>
    <message>
        <source>Episode</source>
        <translation>Folge</translation>
    </message>
</context>
<context>
    <name>kestrel::ReviewTableView</name>
    <message>
        <source>Columns</source>
        <translation>Spalten</translation>
    </message>
    <message>
        <source>&amp;Reset Columns</source>
        <translation>Spalten &amp;zurücksetzen</translation>
    </message>
</context>
<context>
    <name>kestrel::RunPage</name>
    <message>
        <source>✓ Moved, %1</source>
        <translation>✓ Verschoben, %1</translation>
    </message>
    <message>
        <source>✓ Taken back</source>
        <translation>✓ Zurückgenommen</translation>
    </message>
    <message>
        <source>✓ Done, entries changed: %1</source>
        <translation>✓ Erledigt, geänderte Einträge: %1</translation>
    </message>
    <message>
        <source>– Left as it was</source>
        <translation>– Unverändert gelassen</translation>
    </message>
    <message>
        <source>✗ Failed</source>
        <translation>✗ Fehlgeschlagen</translation>
    </message>
    <message>
        <source>– Stopped before it</source>
        <translation>– Vorher angehalten</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>&amp;Stop</source>
        <translation>&amp;Anhalten</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Schließen</translation>
    </message>
    <message>
        <source>What was done</source>
        <translation>Was getan wurde</translation>
    </message>
    <message>
        <source>Take back what was done</source>
        <translation>Zurücknehmen, was getan wurde</translation>
    </message>
    <message>
        <source>What is done by then stays; it can be taken back</source>
        <translation>Was bis dahin getan ist, bleibt; es kann zurückgenommen werden</translation>
    </message>
    <message>
        <source>Stopping…</source>
        <translation>Wird angehalten…</translation>
    </message>
    <message>
        <source>Nothing was changed.</source>
        <translation>Es wurde nichts geändert.</translation>
    </message>
    <message>
        <source>Writing the library…</source>
        <translation>Die Bibliothek wird geschrieben…</translation>
    </message>
    <message>
        <source>%1 of %2: %3</source>
        <translation>%1 von %2: %3</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Playlist</source>
        <translation>Wiedergabeliste</translation>
    </message>
    <message>
        <source>Result</source>
        <translation>Ergebnis</translation>
    </message>
    <message>
        <source>Remark</source>
        <translation>Anmerkung</translation>
    </message>
    <message>
        <source>… and %1 more, in the history</source>
        <translation>… und %1 weitere, siehe Verlauf</translation>
    </message>
</context>
<context>
    <name>kestrel::SelectionWindow</name>
    <message>
        <source>Selection</source>
        <translation>Auswahl</translation>
    </message>
    <message>
        <source>Selected tracks</source>
        <translation>Ausgewählte Titel</translation>
    </message>
</context>
<context>
    <name>kestrel::TargetPlaylistDialog</name>
    <message>
        <source>Add to Playlist</source>
        <translation>Zu Wiedergabeliste hinzufügen</translation>
    </message>
    <message numerus="yes">
        <source>&amp;Add the selected tracks (%n) to the end of</source>
        <translation>
            <numerusform>%n Titel &amp;anhängen an</numerusform>
            <numerusform>%n Titel &amp;anhängen an</numerusform>
        </translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
</context>
<context>
    <name>kestrel::Task</name>
    <message>
        <source>There is not enough memory. Close other programs and try again.</source>
        <translation>Der Arbeitsspeicher reicht nicht aus. Schließen Sie andere Programme und versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Put It Aside and Begin Anew</source>
        <translation>Beiseitelegen und neu beginnen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>kestrel::TrashDialog</name>
    <message>
        <source>Move to Trash</source>
        <translation>In den Papierkorb verschieben</translation>
    </message>
    <message>
        <source>Question</source>
        <translation>Frage</translation>
    </message>
    <message>
        <source>Looking at the files…</source>
        <translation>Die Dateien werden geprüft…</translation>
    </message>
    <message>
        <source>Explanation</source>
        <translation>Erklärung</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>What stays in its place, or why it stays</source>
        <translation>Was an ihrer Stelle bleibt oder warum sie bleibt</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Dateien</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Abbrechen</translation>
    </message>
    <message>
        <source>&amp;Move to Trash</source>
        <translation>In den Papierkorb &amp;verschieben</translation>
    </message>
    <message>
        <source>The files could not be looked at.</source>
        <translation>Die Dateien konnten nicht geprüft werden.</translation>
    </message>
    <message>
        <source>There is nothing to move: all of these tracks are kept.</source>
        <translation>Es gibt nichts zu verschieben: Alle diese Titel werden behalten.</translation>
    </message>
    <message>
        <source>There is nothing to move: all of these files are held back.</source>
        <translation>Es gibt nichts zu verschieben: Alle diese Dateien werden zurückgehalten.</translation>
    </message>
    <message>
        <source>Move 1 file (%1) to the trash?</source>
        <translation>1 Datei (%1) in den Papierkorb verschieben?</translation>
    </message>
    <message>
        <source>Move %1 files (%2) to the trash?</source>
        <translation>%1 Dateien (%2) in den Papierkorb verschieben?</translation>
    </message>
    <message>
        <source>They are files of tracks that are not kept. The library still lists the tracks. What is moved can be moved back, here or from the history.</source>
        <translation>Es sind Dateien von Titeln, die nicht behalten werden. Die Bibliothek führt die Titel weiterhin auf. Verschobenes lässt sich zurückholen, hier oder aus dem Verlauf.</translation>
    </message>
    <message>
        <source>1 file is held back.</source>
        <translation>1 Datei wird zurückgehalten.</translation>
    </message>
    <message>
        <source>%1 files are held back.</source>
        <translation>%1 Dateien werden zurückgehalten.</translation>
    </message>
    <message>
        <source>All are in %1</source>
        <translation>Alle liegen in %1</translation>
    </message>
    <message>
        <source>a keeper in the cloud</source>
        <translation>ein behaltener Titel in der Cloud</translation>
    </message>
    <message>
        <source>To the trash (%1)</source>
        <translation>In den Papierkorb (%1)</translation>
    </message>
    <message>
        <source>Held back (%1): %2</source>
        <translation>Zurückgehalten (%1): %2</translation>
    </message>
    <message>
        <source>Moving files to the trash…</source>
        <translation>Dateien werden in den Papierkorb verschoben…</translation>
    </message>
</context>
<context>
    <name>kestrel::Undo</name>
    <message>
        <source>“%1”: %2.</source>
        <translation>„%1“: %2.</translation>
    </message>
    <message>
        <source>And %1 more.</source>
        <translation>Und %1 weitere.</translation>
    </message>
    <message>
        <source>The changes could not be taken back.</source>
        <translation>Die Änderungen konnten nicht zurückgenommen werden.</translation>
    </message>
    <message>
        <source>Nothing was taken back, because it has been changed since.</source>
        <translation>Es wurde nichts zurückgenommen, weil es seither geändert wurde.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Some of what this run changed has been changed again since.</source>
        <translation>Einiges von dem, was dieser Durchlauf geändert hat, wurde seither wieder geändert.</translation>
    </message>
    <message>
        <source>Shall Kestrel take back the rest and leave these as they are?</source>
        <translation>Soll Kestrel den Rest zurücknehmen und dies so lassen, wie es ist?</translation>
    </message>
    <message>
        <source>Take Back the Rest</source>
        <translation>Rest zurücknehmen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Finds the duplicate songs of a music library.</source>
        <translation>Findet die doppelten Titel einer Musikbibliothek.</translation>
    </message>
    <message>
        <source>The library document to open, as XML</source>
        <translation>Das zu öffnende Bibliotheksdokument, als XML</translation>
    </message>
</context>
</TS>
