<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>Message</name>
    <message>
        <source>%1, line %2, column %3: %4.</source>
        <translation>%1, Zeile %2, Spalte %3: %4.</translation>
    </message>
    <message>
        <source>%1: %2.</source>
        <translation>%1: %2.</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <translation>%1 %2</translation>
    </message>
    <message>
        <source>%1 and %2</source>
        <translation>%1 und %2</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
    <message numerus="yes">
        <source>%1 and %Ln more</source>
        <comment>%1 and %Ln more</comment>
        <translation>
            <numerusform>%1 und %Ln weitere</numerusform>
            <numerusform>%1 und %Ln weitere</numerusform>
        </translation>
    </message>
    <message>
        <source>&quot;%1&quot;</source>
        <translation>„%1“</translation>
    </message>
    <message>
        <source>%1.</source>
        <translation>%1.</translation>
    </message>
    <message>
        <source>Export the library again, or repair the document at that place.</source>
        <translation>Exportieren Sie die Bibliothek noch einmal, oder reparieren Sie das Dokument an dieser Stelle.</translation>
    </message>
    <message>
        <source>Export the library from the music application as XML, or convert the file to an XML property list.</source>
        <translation>Exportieren Sie die Bibliothek aus dem Musikprogramm als XML, oder wandeln Sie die Datei in eine XML-Eigenschaftsliste um.</translation>
    </message>
    <message>
        <source>The file may be incomplete: export or copy it again.</source>
        <translation>Die Datei ist vielleicht unvollständig: exportieren oder kopieren Sie sie noch einmal.</translation>
    </message>
    <message>
        <source>expected %1, but the document ends here</source>
        <translation>erwartet wird %1, aber das Dokument endet hier</translation>
    </message>
    <message>
        <source>expected %1, found %2</source>
        <translation>erwartet wird %1, hier steht %2</translation>
    </message>
    <message>
        <source>this byte is not valid UTF-8</source>
        <translation>dieses Byte ist kein gültiges UTF-8</translation>
    </message>
    <message>
        <source>a value or &lt;/array&gt;</source>
        <translation>ein Wert oder &lt;/array&gt;</translation>
    </message>
    <message>
        <source>this number does not fit into 64 bits</source>
        <translation>diese Zahl passt nicht in 64 Bit</translation>
    </message>
    <message>
        <source>expected a whole number</source>
        <translation>erwartet wird eine ganze Zahl</translation>
    </message>
    <message>
        <source>]]&gt; after this CDATA section</source>
        <translation>]]&gt; nach diesem CDATA-Abschnitt</translation>
    </message>
    <message>
        <source>a bare &amp; must be written &amp;amp;</source>
        <translation>ein einzelnes &amp; muss &amp;amp; geschrieben werden</translation>
    </message>
    <message>
        <source>&amp;%1; is no character</source>
        <translation>&amp;%1; ist kein Zeichen</translation>
    </message>
    <message>
        <source>the entity &amp;%1; is not one of the five that every document has</source>
        <translation>die Entität &amp;%1; ist keine der fünf, die jedes Dokument hat</translation>
    </message>
    <message>
        <source>this comment has no end</source>
        <translation>dieser Kommentar hat kein Ende</translation>
    </message>
    <message>
        <source>this processing instruction has no end</source>
        <translation>diese Verarbeitungsanweisung hat kein Ende</translation>
    </message>
    <message>
        <source>this document type has no end</source>
        <translation>dieser Dokumenttyp hat kein Ende</translation>
    </message>
    <message>
        <source>a tag</source>
        <translation>ein Tag</translation>
    </message>
    <message>
        <source>an element of a property list</source>
        <translation>ein Element einer Eigenschaftsliste</translation>
    </message>
    <message>
        <source>a closing tag has no attributes</source>
        <translation>ein schließendes Tag hat keine Attribute</translation>
    </message>
    <message>
        <source>this attribute has no end</source>
        <translation>dieses Attribut hat kein Ende</translation>
    </message>
    <message>
        <source>a closing tag cannot be empty</source>
        <translation>ein schließendes Tag kann nicht leer sein</translation>
    </message>
    <message>
        <source>expected &gt; at the end of this tag</source>
        <translation>erwartet wird &gt; am Ende dieses Tags</translation>
    </message>
    <message>
        <source>this tag has no end</source>
        <translation>dieses Tag hat kein Ende</translation>
    </message>
    <message>
        <source>a value</source>
        <translation>ein Wert</translation>
    </message>
    <message>
        <source>expected %1</source>
        <translation>erwartet wird %1</translation>
    </message>
    <message>
        <source>&lt;key&gt; or &lt;/dict&gt;</source>
        <translation>&lt;key&gt; oder &lt;/dict&gt;</translation>
    </message>
    <message>
        <source>values are nested more than %1 deep</source>
        <translation>Werte sind mehr als %1-fach verschachtelt</translation>
    </message>
    <message>
        <source>this is a binary property list, and an XML one was expected</source>
        <translation>dies ist eine binäre Eigenschaftsliste, erwartet wird eine aus XML</translation>
    </message>
    <message>
        <source>nothing after &lt;/plist&gt;</source>
        <translation>nichts nach &lt;/plist&gt;</translation>
    </message>
    <message>
        <source>expected a number</source>
        <translation>erwartet wird eine Zahl</translation>
    </message>
    <message>
        <source>expected a date such as 2019-02-28T23:59:59Z</source>
        <translation>erwartet wird ein Datum wie 2019-02-28T23:59:59Z</translation>
    </message>
    <message>
        <source>expected bytes in Base64</source>
        <translation>erwartet werden Bytes in Base64</translation>
    </message>
    <message>
        <source>the file is empty</source>
        <translation>die Datei ist leer</translation>
    </message>
    <message>
        <source>half of a UTF-16 surrogate pair stands alone</source>
        <translation>die Hälfte eines UTF-16-Ersatzpaars steht allein</translation>
    </message>
    <message>
        <source>the last UTF-16 character is cut in half</source>
        <translation>das letzte UTF-16-Zeichen ist halbiert</translation>
    </message>
    <message>
        <source>the document says that it is UTF-16, but its bytes are not</source>
        <translation>das Dokument nennt sich UTF-16, seine Bytes sind es aber nicht</translation>
    </message>
    <message>
        <source>expected the encoding UTF-8, UTF-16 or ISO-8859-1, found %1</source>
        <translation>erwartet wird die Kodierung UTF-8, UTF-16 oder ISO-8859-1, hier steht %1</translation>
    </message>
    <message>
        <source>cannot be written</source>
        <translation>kann nicht geschrieben werden</translation>
    </message>
    <message>
        <source>was written, but may not outlast a power cut</source>
        <translation>wurde geschrieben, übersteht aber vielleicht keinen Stromausfall</translation>
    </message>
    <message>
        <source>cannot be read</source>
        <translation>kann nicht gelesen werden</translation>
    </message>
    <message>
        <source>Check the path.</source>
        <translation>Prüfen Sie den Pfad.</translation>
    </message>
    <message>
        <source>Check the permissions of the file and its folder.</source>
        <translation>Prüfen Sie die Rechte der Datei und ihres Ordners.</translation>
    </message>
    <message>
        <source>Choose a place that can be written to.</source>
        <translation>Wählen Sie einen Ort, an dem geschrieben werden darf.</translation>
    </message>
    <message>
        <source>Give a file, not a folder.</source>
        <translation>Geben Sie eine Datei an, keinen Ordner.</translation>
    </message>
    <message>
        <source>Move away what is there, or choose another name.</source>
        <translation>Räumen Sie weg, was dort ist, oder wählen Sie einen anderen Namen.</translation>
    </message>
    <message>
        <source>Free some space and try again.</source>
        <translation>Schaffen Sie Platz, und versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>Choose a place on the same volume.</source>
        <translation>Wählen Sie einen Ort auf demselben Datenträger.</translation>
    </message>
    <message>
        <source>Check that the volume is mounted and in order, then try again.</source>
        <translation>Prüfen Sie, ob der Datenträger eingehängt und in Ordnung ist, und versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>cannot be created</source>
        <translation>kann nicht angelegt werden</translation>
    </message>
    <message>
        <source>cannot be removed</source>
        <translation>kann nicht entfernt werden</translation>
    </message>
    <message>
        <source>cannot be moved to %1</source>
        <translation>kann nicht nach %1 verschoben werden</translation>
    </message>
    <message>
        <source>cannot be listed</source>
        <translation>kann nicht aufgelistet werden</translation>
    </message>
    <message>
        <source>cannot be moved to the trash</source>
        <translation>kann nicht in den Papierkorb verschoben werden</translation>
    </message>
    <message>
        <source>cannot be moved to the trash: this is not a full path</source>
        <translation>kann nicht in den Papierkorb verschoben werden: dies ist kein vollständiger Pfad</translation>
    </message>
    <message>
        <source>Give the path from the root on.</source>
        <translation>Geben Sie den Pfad vom Wurzelverzeichnis an.</translation>
    </message>
    <message>
        <source>cannot be moved to the trash: its volume has none and none can be made</source>
        <translation>kann nicht in den Papierkorb verschoben werden: der Datenträger hat keinen, und es kann keiner angelegt werden</translation>
    </message>
    <message>
        <source>Check the permissions of %1, or remove the file by other means.</source>
        <translation>Prüfen Sie die Rechte von %1, oder entfernen Sie die Datei auf andere Weise.</translation>
    </message>
    <message>
        <source>cannot be moved to the trash: it holds the trash</source>
        <translation>kann nicht in den Papierkorb verschoben werden: der Papierkorb liegt darin</translation>
    </message>
    <message>
        <source>Choose a part of it.</source>
        <translation>Wählen Sie einen Teil davon.</translation>
    </message>
    <message>
        <source>cannot be moved to the trash: %1 is no folder of yours</source>
        <translation>kann nicht in den Papierkorb verschoben werden: %1 ist keiner Ihrer Ordner</translation>
    </message>
    <message>
        <source>Check the trash folder.</source>
        <translation>Prüfen Sie den Ordner des Papierkorbs.</translation>
    </message>
    <message>
        <source>cannot be put back</source>
        <translation>kann nicht zurückgelegt werden</translation>
    </message>
    <message>
        <source>cannot be opened for the log</source>
        <translation>kann nicht für das Protokoll geöffnet werden</translation>
    </message>
    <message>
        <source>cannot be read: it is not an ordinary file</source>
        <translation>kann nicht gelesen werden: es ist keine gewöhnliche Datei</translation>
    </message>
    <message>
        <source>Give another file.</source>
        <translation>Geben Sie eine andere Datei an.</translation>
    </message>
    <message>
        <source>cannot be started</source>
        <translation>kann nicht gestartet werden</translation>
    </message>
    <message>
        <source>cannot hold a temporary file</source>
        <translation>kann keine temporäre Datei aufnehmen</translation>
    </message>
    <message>
        <source>cannot be kept as a backup</source>
        <translation>kann nicht als Sicherung aufbewahrt werden</translation>
    </message>
    <message>
        <source>There is no playlist with the persistent ID %1</source>
        <translation>Es gibt keine Wiedergabeliste mit der Kennung %1</translation>
    </message>
    <message>
        <source>There is nothing with the persistent ID %1</source>
        <translation>Es gibt nichts mit der Kennung %1</translation>
    </message>
    <message>
        <source>There is no track with the persistent ID %1</source>
        <translation>Es gibt keinen Titel mit der Kennung %1</translation>
    </message>
    <message>
        <source>The playlist %1 %2</source>
        <translation>Die Wiedergabeliste %1 %2</translation>
    </message>
    <message>
        <source>%1: there is no such file</source>
        <translation>%1: diese Datei gibt es nicht</translation>
    </message>
    <message>
        <source>The track has no file that could be shown</source>
        <translation>Der Titel hat keine Datei, die gezeigt werden könnte</translation>
    </message>
    <message>
        <source>The playlist has no entry at a position</source>
        <translation>Die Wiedergabeliste hat an einer der Stellen keinen Eintrag</translation>
    </message>
    <message>
        <source>is no folder</source>
        <translation>ist kein Ordner</translation>
    </message>
    <message>
        <source>cannot be moved</source>
        <translation>kann nicht verschoben werden</translation>
    </message>
    <message>
        <source>cannot be moved into itself</source>
        <translation>kann nicht in sich selbst verschoben werden</translation>
    </message>
    <message>
        <source>%1: this is neither an audio file nor a playlist document</source>
        <translation>%1: dies ist weder eine Audiodatei noch ein Dokument mit Wiedergabelisten</translation>
    </message>
    <message>
        <source>fills itself: its entries cannot be changed</source>
        <translation>füllt sich selbst: ihre Einträge können nicht geändert werden</translation>
    </message>
    <message>
        <source>cannot be deleted</source>
        <translation>kann nicht gelöscht werden</translation>
    </message>
    <message>
        <source>There is nothing here to show it in</source>
        <translation>Hier gibt es nichts, worin es gezeigt werden könnte</translation>
    </message>
    <message>
        <source>there are zeros here instead of a text</source>
        <translation>hier stehen Nullen statt eines Textes</translation>
    </message>
    <message>
        <source>has %1 names (hard links), of which only this one would get the change</source>
        <translation>hat %1 Namen (harte Verweise), von denen nur dieser die Änderung bekäme</translation>
    </message>
    <message>
        <source>Make it a file of its own: copy it, and give the copy its name.</source>
        <translation>Machen Sie eine eigene Datei daraus: Kopieren Sie sie, und geben Sie der Kopie ihren Namen.</translation>
    </message>
    <message>
        <source>belongs to the user %1 and the group %2, and would become yours by the change</source>
        <translation>gehört dem Benutzer %1 und der Gruppe %2 und ginge durch die Änderung an Sie über</translation>
    </message>
    <message>
        <source>Make the change as that user, or in a copy of your own.</source>
        <translation>Ändern Sie sie als dieser Benutzer, oder ändern Sie eine eigene Kopie.</translation>
    </message>
    <message>
        <source>cannot be written: it is not an ordinary file</source>
        <translation>kann nicht geschrieben werden: es ist keine gewöhnliche Datei</translation>
    </message>
    <message>
        <source>cannot be read: it is too large</source>
        <translation>kann nicht gelesen werden: die Datei ist zu groß</translation>
    </message>
    <message>
        <source>was changed by another program while it was read</source>
        <translation>wurde von einem anderen Programm geändert, während die Datei gelesen wurde</translation>
    </message>
    <message>
        <source>Wait until that program is done, then try again.</source>
        <translation>Warten Sie, bis dieses Programm fertig ist, und versuchen Sie es dann noch einmal.</translation>
    </message>
    <message>
        <source>is read-only</source>
        <translation>ist schreibgeschützt</translation>
    </message>
    <message>
        <source>Allow writing to it, then try again.</source>
        <translation>Erlauben Sie das Schreiben, und versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>was changed by another program since it was read, so nothing was written to it</source>
        <translation>wurde seit dem Lesen von einem anderen Programm geändert, deshalb wurde nichts hineingeschrieben</translation>
    </message>
    <message>
        <source>Reload the library and try again.</source>
        <translation>Laden Sie die Bibliothek neu, und versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>expected the library&apos;s &lt;dict&gt;</source>
        <translation>erwartet wird das &lt;dict&gt; der Bibliothek</translation>
    </message>
    <message>
        <source>expected a playlist to be a &lt;dict&gt;</source>
        <translation>eine Wiedergabeliste muss ein &lt;dict&gt; sein</translation>
    </message>
    <message>
        <source>cannot be found</source>
        <translation>kann nicht gefunden werden</translation>
    </message>
    <message>
        <source>cannot be changed: there is no folder for backups, as the system does not say where the user&apos;s home is</source>
        <translation>kann nicht geändert werden: es gibt keinen Ordner für Sicherungen, da das System nicht sagt, wo der persönliche Ordner ist</translation>
    </message>
    <message>
        <source>Set HOME.</source>
        <translation>Setzen Sie HOME.</translation>
    </message>
    <message>
        <source>cannot be changed: Kestrel&apos;s folder %1 %2</source>
        <translation>kann nicht geändert werden: der Ordner %1 von Kestrel %2</translation>
    </message>
    <message>
        <source>another Kestrel is changing this library</source>
        <translation>ein anderes Kestrel ändert diese Bibliothek gerade</translation>
    </message>
    <message>
        <source>Wait until it has finished, or close it.</source>
        <translation>Warten Sie, bis es fertig ist, oder schließen Sie es.</translation>
    </message>
    <message>
        <source>cannot be locked</source>
        <translation>kann nicht gesperrt werden</translation>
    </message>
    <message>
        <source>cannot be changed: %1: %2</source>
        <translation>kann nicht geändert werden: %1: %2</translation>
    </message>
    <message>
        <source>was not changed: a command broke off</source>
        <translation>wurde nicht geändert: ein Befehl brach ab</translation>
    </message>
    <message>
        <source>Start again with what was to be done.</source>
        <translation>Beginnen Sie noch einmal mit dem, was zu tun war.</translation>
    </message>
    <message>
        <source>is being changed already</source>
        <translation>wird bereits geändert</translation>
    </message>
    <message>
        <source>Wait until that has finished.</source>
        <translation>Warten Sie, bis das fertig ist.</translation>
    </message>
    <message>
        <source>expected &lt;/dict&gt;, but the document ends here</source>
        <translation>erwartet wird &lt;/dict&gt;, aber das Dokument endet hier</translation>
    </message>
    <message>
        <source>expected Tracks to be a &lt;dict&gt;</source>
        <translation>„Tracks“ muss ein &lt;dict&gt; sein</translation>
    </message>
    <message>
        <source>expected Playlists to be an &lt;array&gt;</source>
        <translation>„Playlists“ muss ein &lt;array&gt; sein</translation>
    </message>
    <message>
        <source>this property list is no music library: it has no Tracks</source>
        <translation>diese Eigenschaftsliste ist keine Musikbibliothek: sie hat keine „Tracks“</translation>
    </message>
    <message>
        <source>Export the library again.</source>
        <translation>Exportieren Sie die Bibliothek noch einmal.</translation>
    </message>
    <message>
        <source>expected the track %1 to be a &lt;dict&gt;</source>
        <translation>der Titel %1 muss ein &lt;dict&gt; sein</translation>
    </message>
    <message>
        <source>cannot be shown: this desktop has no xdg-open</source>
        <translation>kann nicht gezeigt werden: diese Arbeitsumgebung hat kein xdg-open</translation>
    </message>
    <message>
        <source>Install the package that has it.</source>
        <translation>Installieren Sie das Paket, das es enthält.</translation>
    </message>
    <message>
        <source>cannot be shown: no window here has playlists</source>
        <translation>kann nicht gezeigt werden: kein Fenster hier hat Wiedergabelisten</translation>
    </message>
    <message>
        <source>Line %1, column %2: %3</source>
        <translation>Zeile %1, Spalte %2: %3</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>%1 ended with status %2.</source>
        <translation>%1 endete mit dem Status %2.</translation>
    </message>
    <message>
        <source>There is no music application to send this to.</source>
        <translation>Es gibt kein Musikprogramm, an das dies gesendet werden könnte.</translation>
    </message>
    <message>
        <source>%1</source>
        <translation>%1</translation>
    </message>
    <message>
        <source>never</source>
        <translation>nie</translation>
    </message>
    <message>
        <source>no date</source>
        <translation>kein Datum</translation>
    </message>
    <message numerus="yes">
        <source>%Ln plays</source>
        <comment>%Ln play</comment>
        <translation>
            <numerusform>%Ln Wiedergabe</numerusform>
            <numerusform>%Ln Wiedergaben</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 kbps</source>
        <translation>%1 kbit/s</translation>
    </message>
    <message numerus="yes">
        <source>%Ln characters</source>
        <comment>%Ln character</comment>
        <translation>
            <numerusform>%Ln Zeichen</numerusform>
            <numerusform>%Ln Zeichen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln bytes</source>
        <comment>%Ln byte</comment>
        <translation>
            <numerusform>%Ln Byte</numerusform>
            <numerusform>%Ln Byte</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 over %2 plays</source>
        <translation>%1 statt %2 Wiedergaben</translation>
    </message>
    <message>
        <source>%1 over %2 characters</source>
        <translation>%1 statt %2 Zeichen</translation>
    </message>
    <message>
        <source>%1 over %2 bytes</source>
        <translation>%1 statt %2 Byte</translation>
    </message>
    <message>
        <source>%1 over %2</source>
        <translation>%1 statt %2</translation>
    </message>
    <message>
        <source>tie at %1: the last in the table</source>
        <translation>gleichauf: %1, der letzte in der Tabelle</translation>
    </message>
    <message>
        <source>in %1</source>
        <translation>in %1</translation>
    </message>
    <message numerus="yes">
        <source>%Ln tracks in %1: the last in the table</source>
        <comment>%Ln track in %1: the last in the table</comment>
        <translation>
            <numerusform>%Ln Titel in %1: der letzte in der Tabelle</numerusform>
            <numerusform>%Ln Titel in %1: der letzte in der Tabelle</numerusform>
        </translation>
    </message>
    <message>
        <source>no track in the folder</source>
        <translation>kein Titel in dem Ordner</translation>
    </message>
    <message>
        <source>only cloud tracks</source>
        <translation>nur Titel in der Cloud</translation>
    </message>
    <message>
        <source>only very long file names</source>
        <translation>nur sehr lange Dateinamen</translation>
    </message>
    <message>
        <source>no such rule</source>
        <translation>diese Regel gibt es nicht</translation>
    </message>
    <message>
        <source>%1; %2</source>
        <translation>%1; %2</translation>
    </message>
    <message>
        <source>no keeper</source>
        <translation>keiner wird behalten</translation>
    </message>
    <message>
        <source>chosen at random</source>
        <translation>zufällig gewählt</translation>
    </message>
    <message numerus="yes">
        <source>%Ln cloud tracks not considered</source>
        <comment>%Ln cloud track not considered</comment>
        <translation>
            <numerusform>%Ln Titel in der Cloud nicht berücksichtigt</numerusform>
            <numerusform>%Ln Titel in der Cloud nicht berücksichtigt</numerusform>
        </translation>
    </message>
    <message>
        <source>no track of the wanted file type: no keeper</source>
        <translation>kein Titel vom gewünschten Dateityp: keiner wird behalten</translation>
    </message>
    <message>
        <source>fewer than two tracks: nothing to decide</source>
        <translation>weniger als zwei Titel: nichts zu entscheiden</translation>
    </message>
    <message>
        <source>all files are missing: no keeper</source>
        <translation>alle Dateien fehlen: keiner wird behalten</translation>
    </message>
    <message>
        <source>the only track whose file is there</source>
        <translation>der einzige Titel, dessen Datei da ist</translation>
    </message>
    <message>
        <source>among those of the wanted file type and bit rate</source>
        <translation>unter denen vom gewünschten Dateityp und mit der gewünschten Bitrate</translation>
    </message>
    <message>
        <source>among those of the wanted file type</source>
        <translation>unter denen vom gewünschten Dateityp</translation>
    </message>
    <message>
        <source>no track of the wanted file type</source>
        <translation>kein Titel vom gewünschten Dateityp</translation>
    </message>
    <message>
        <source>none with the wanted bit rate</source>
        <translation>keiner mit der gewünschten Bitrate</translation>
    </message>
    <message numerus="yes">
        <source>%Ln missing files set aside</source>
        <comment>%Ln missing file set aside</comment>
        <translation>
            <numerusform>%Ln fehlende Datei nicht beachtet</numerusform>
            <numerusform>%Ln fehlende Dateien nicht beachtet</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln cloud tracks spared</source>
        <comment>%Ln cloud track spared</comment>
        <translation>
            <numerusform>%Ln Titel in der Cloud verschont</numerusform>
            <numerusform>%Ln Titel in der Cloud verschont</numerusform>
        </translation>
    </message>
    <message>
        <source>it is no longer in the library</source>
        <translation>nicht mehr in der Bibliothek</translation>
    </message>
    <message>
        <source>the playlist %1 lists it</source>
        <translation>die Wiedergabeliste %1 enthält den Titel</translation>
    </message>
    <message numerus="yes">
        <source>the playlist %1 and %Ln others list it</source>
        <comment>the playlist %1 and %Ln other list it</comment>
        <translation>
            <numerusform>die Wiedergabeliste %1 und %Ln andere enthalten den Titel</numerusform>
            <numerusform>die Wiedergabeliste %1 und %Ln andere enthalten den Titel</numerusform>
        </translation>
    </message>
    <message>
        <source>its track was changed, or played, since</source>
        <translation>der Titel wurde seither geändert oder gespielt</translation>
    </message>
    <message>
        <source>the plan cannot be applied: %1</source>
        <translation>der Plan kann nicht ausgeführt werden: %1</translation>
    </message>
    <message>
        <source>Make the plan again.</source>
        <translation>Machen Sie den Plan noch einmal.</translation>
    </message>
    <message>
        <source>it was changed since the plan was made</source>
        <translation>wurde geändert, seit der Plan gemacht wurde</translation>
    </message>
    <message>
        <source>another playlist has its name, and would be deleted</source>
        <translation>eine andere Wiedergabeliste heißt ebenso und würde gelöscht</translation>
    </message>
    <message>
        <source>it is no ordinary playlist</source>
        <translation>keine gewöhnliche Wiedergabeliste</translation>
    </message>
    <message>
        <source>entry %1 is another track</source>
        <translation>Eintrag %1 ist ein anderer Titel</translation>
    </message>
    <message>
        <source>the keeper %1 is not in the library</source>
        <translation>der zu behaltende Titel %1 ist nicht in der Bibliothek</translation>
    </message>
    <message>
        <source>%1 lists an unknown track</source>
        <translation>%1 enthält einen unbekannten Titel</translation>
    </message>
    <message>
        <source>the library did not become what was planned: %1</source>
        <translation>die Bibliothek wurde nicht, was geplant war: %1</translation>
    </message>
    <message>
        <source>the run failed and nothing of it was kept</source>
        <translation>der Durchlauf ist gescheitert, nichts davon wurde behalten</translation>
    </message>
    <message>
        <source>there is no such file</source>
        <translation>diese Datei gibt es nicht</translation>
    </message>
    <message>
        <source>it is a folder</source>
        <translation>es ist ein Ordner</translation>
    </message>
    <message>
        <source>the library has it already</source>
        <translation>die Bibliothek hat sie schon</translation>
    </message>
    <message>
        <source>the music application does not take it: it is no audio file, or cannot be read</source>
        <translation>das Musikprogramm nimmt sie nicht an: es ist keine Audiodatei, oder sie kann nicht gelesen werden</translation>
    </message>
    <message>
        <source>adding files changed playlists: %1</source>
        <translation>das Hinzufügen der Dateien hat Wiedergabelisten geändert: %1</translation>
    </message>
    <message>
        <source>the library did not grow by the tracks that were added</source>
        <translation>die Bibliothek ist nicht um die hinzugefügten Titel gewachsen</translation>
    </message>
    <message>
        <source>the playlist %1 is gone</source>
        <translation>die Wiedergabeliste %1 ist nicht mehr da</translation>
    </message>
    <message>
        <source>the playlist %1 is not what it should be</source>
        <translation>die Wiedergabeliste %1 ist nicht, wie sie sein sollte</translation>
    </message>
    <message>
        <source>there is a playlist %1 too many</source>
        <translation>es gibt eine Wiedergabeliste %1 zu viel</translation>
    </message>
    <message numerus="yes">
        <source>%Ln changes</source>
        <comment>%Ln change</comment>
        <translation>
            <numerusform>%Ln Änderung</numerusform>
            <numerusform>%Ln Änderungen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln files</source>
        <comment>%Ln file</comment>
        <translation>
            <numerusform>%Ln Datei</numerusform>
            <numerusform>%Ln Dateien</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln playlists</source>
        <comment>%Ln playlist</comment>
        <translation>
            <numerusform>%Ln Wiedergabeliste</numerusform>
            <numerusform>%Ln Wiedergabelisten</numerusform>
        </translation>
    </message>
    <message>
        <source>Replaced %1 in %2.</source>
        <translation>%1 in %2 ersetzt.</translation>
    </message>
    <message numerus="yes">
        <source>%Ln entries</source>
        <comment>%Ln entry</comment>
        <translation>
            <numerusform>%Ln Eintrag</numerusform>
            <numerusform>%Ln Einträge</numerusform>
        </translation>
    </message>
    <message>
        <source>Deleted %1 from %2.</source>
        <translation>%1 aus %2 gelöscht.</translation>
    </message>
    <message numerus="yes">
        <source>%Ln repeated entries</source>
        <comment>%Ln repeated entry</comment>
        <translation>
            <numerusform>%Ln mehrfacher Eintrag</numerusform>
            <numerusform>%Ln mehrfache Einträge</numerusform>
        </translation>
    </message>
    <message>
        <source>Moved to the trash (%1): %2.</source>
        <translation>In den Papierkorb verschoben (%1): %2.</translation>
    </message>
    <message>
        <source>Undone: %1.</source>
        <translation>Rückgängig gemacht: %1.</translation>
    </message>
    <message>
        <source>Added %1 to %2.</source>
        <translation>%1 zu %2 hinzugefügt.</translation>
    </message>
    <message numerus="yes">
        <source>%Ln tracks</source>
        <comment>%Ln track</comment>
        <translation>
            <numerusform>%Ln Titel</numerusform>
            <numerusform>%Ln Titel</numerusform>
        </translation>
    </message>
    <message>
        <source>Added to the library (%1): %2.</source>
        <translation>Zur Bibliothek hinzugefügt (%1): %2.</translation>
    </message>
    <message>
        <source>%1 left out.</source>
        <translation>%1 ausgelassen.</translation>
    </message>
    <message>
        <source>%1 failed.</source>
        <translation>%1 gescheitert.</translation>
    </message>
    <message>
        <source>Cancelled before %1.</source>
        <translation>Abgebrochen; nicht mehr erreicht: %1.</translation>
    </message>
    <message>
        <source>This is run %1 of the history.</source>
        <translation>Das ist Durchlauf %1 des Verlaufs.</translation>
    </message>
    <message>
        <source>Nothing was changed: %1</source>
        <translation>Nichts wurde geändert: %1</translation>
    </message>
    <message>
        <source>it is no longer there</source>
        <translation>nicht mehr da</translation>
    </message>
    <message>
        <source>another file has taken its place</source>
        <translation>eine andere Datei ist an ihrer Stelle</translation>
    </message>
    <message>
        <source>the file that is kept is no longer there</source>
        <translation>die Datei, die behalten wird, ist nicht mehr da</translation>
    </message>
    <message>
        <source>the history cannot be read: it says %1 of a run</source>
        <translation>der Verlauf kann nicht gelesen werden: er nennt einen Durchlauf %1</translation>
    </message>
    <message>
        <source>%1: %2. Nothing was changed. Have it moved aside to begin a new history; the old file is kept.</source>
        <translation>%1: %2. Nichts wurde geändert. Lassen Sie die Datei beiseitelegen, um einen neuen Verlauf zu beginnen; sie bleibt erhalten.</translation>
    </message>
    <message>
        <source>the history cannot be read: the entries of a playlist are damaged</source>
        <translation>der Verlauf kann nicht gelesen werden: die Einträge einer Wiedergabeliste sind beschädigt</translation>
    </message>
    <message>
        <source>the history cannot be read: %1</source>
        <translation>der Verlauf kann nicht gelesen werden: %1</translation>
    </message>
    <message>
        <source>the history is in use by another Kestrel. Try again</source>
        <translation>der Verlauf wird von einem anderen Kestrel benutzt. Versuchen Sie es noch einmal</translation>
    </message>
    <message>
        <source>the history cannot be written: there is no room. Free some space</source>
        <translation>der Verlauf kann nicht geschrieben werden: es ist kein Platz. Schaffen Sie Platz</translation>
    </message>
    <message>
        <source>the history cannot be used: %1. Check that its folder exists and can be written to</source>
        <translation>der Verlauf kann nicht benutzt werden: %1. Prüfen Sie, ob es seinen Ordner gibt und ob in ihn geschrieben werden darf</translation>
    </message>
    <message>
        <source>the history can be read, so it was left where it is</source>
        <translation>der Verlauf kann gelesen werden und wurde deshalb gelassen, wo er ist</translation>
    </message>
    <message>
        <source>the history cannot be read: it is another program&apos;s file</source>
        <translation>der Verlauf kann nicht gelesen werden: die Datei gehört einem anderen Programm</translation>
    </message>
    <message>
        <source>the history was written by a newer Kestrel. Use that one</source>
        <translation>der Verlauf wurde von einem neueren Kestrel geschrieben. Benutzen Sie dieses</translation>
    </message>
    <message>
        <source>a folder stands for the playlists in it and is never rebuilt itself</source>
        <translation>ein Ordner steht für die Wiedergabelisten darin und wird nie selbst neu aufgebaut</translation>
    </message>
    <message>
        <source>its entries are the music application&apos;s to choose</source>
        <translation>die Einträge wählt das Musikprogramm</translation>
    </message>
    <message>
        <source>it was made from the library %1, and this is %2</source>
        <translation>er wurde aus der Bibliothek %1 gemacht, und dies ist %2</translation>
    </message>
    <message>
        <source>another library has taken the place of the one it was made from</source>
        <translation>eine andere Bibliothek ist an die Stelle der seinen getreten</translation>
    </message>
    <message>
        <source>none of its tracks has a keeper to go in</source>
        <translation>zu keinem der Titel gibt es einen behaltenen als Ersatz</translation>
    </message>
    <message>
        <source>this is no plan that can be applied: %1 is not %2</source>
        <translation>dies ist kein Plan, der ausgeführt werden kann: %1 ist nicht %2</translation>
    </message>
    <message>
        <source>a list</source>
        <translation>eine Liste</translation>
    </message>
    <message>
        <source>a text</source>
        <translation>ein Text</translation>
    </message>
    <message>
        <source>a hexadecimal ID</source>
        <translation>eine hexadezimale Kennung</translation>
    </message>
    <message>
        <source>a number from 0</source>
        <translation>eine Zahl ab 0</translation>
    </message>
    <message>
        <source>a whole number</source>
        <translation>eine ganze Zahl</translation>
    </message>
    <message>
        <source>true or false</source>
        <translation>true oder false</translation>
    </message>
    <message>
        <source>one of the known words</source>
        <translation>eines der bekannten Wörter</translation>
    </message>
    <message>
        <source>a position of the playlist, in ascending order</source>
        <translation>eine Stelle der Wiedergabeliste, in aufsteigender Folge</translation>
    </message>
    <message>
        <source>Base64</source>
        <translation>Base64</translation>
    </message>
    <message>
        <source>this is no plan: it is not JSON from here on</source>
        <translation>dies ist kein Plan: ab hier ist es kein JSON</translation>
    </message>
    <message>
        <source>this plan has the format %1, and only format %2 is known</source>
        <translation>dieser Plan hat das Format %1, und nur Format %2 ist bekannt</translation>
    </message>
    <message>
        <source>Make the plan again with this version of Kestrel.</source>
        <translation>Machen Sie den Plan mit dieser Version von Kestrel noch einmal.</translation>
    </message>
    <message>
        <source>a file of the group is missing</source>
        <translation>eine Datei der Gruppe fehlt</translation>
    </message>
    <message>
        <source>no track of the group is kept</source>
        <translation>kein Titel der Gruppe behalten wird</translation>
    </message>
    <message>
        <source>the outline cannot show what is in a folder within a folder</source>
        <translation>die Übersicht kann nicht zeigen, was in einem Ordner in einem Ordner liegt</translation>
    </message>
    <message>
        <source>the library has no %1</source>
        <translation>die Bibliothek hat kein %1</translation>
    </message>
    <message>
        <source>Export the library again from a current music application.</source>
        <translation>Exportieren Sie die Bibliothek noch einmal aus einem aktuellen Musikprogramm.</translation>
    </message>
    <message>
        <source>it is in the cloud</source>
        <translation>in der Cloud</translation>
    </message>
    <message>
        <source>its file is missing</source>
        <translation>die Datei fehlt</translation>
    </message>
    <message>
        <source>it is no regular file</source>
        <translation>keine gewöhnliche Datei</translation>
    </message>
    <message>
        <source>its group has no keeper</source>
        <translation>in der Gruppe wird keiner behalten</translation>
    </message>
    <message>
        <source>the file of its group&apos;s keeper is missing</source>
        <translation>die Datei des behaltenen Titels der Gruppe fehlt</translation>
    </message>
    <message>
        <source>the track is itself a keeper</source>
        <translation>der Titel wird selbst behalten</translation>
    </message>
    <message>
        <source>a keeper has the same file</source>
        <translation>ein behaltener Titel hat dieselbe Datei</translation>
    </message>
    <message>
        <source>a keeper has the same file under another path</source>
        <translation>ein behaltener Titel hat dieselbe Datei unter einem anderen Pfad</translation>
    </message>
    <message>
        <source>another track of the library has the same file</source>
        <translation>ein anderer Titel der Bibliothek hat dieselbe Datei</translation>
    </message>
    <message>
        <source>the library did not become what it was: %1</source>
        <translation>die Bibliothek wurde nicht wieder, was sie war: %1</translation>
    </message>
    <message>
        <source>nothing was undone: %1</source>
        <translation>nichts wurde rückgängig gemacht: %1</translation>
    </message>
    <message>
        <source>Try again.</source>
        <translation>Versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>there is no run %1</source>
        <translation>es gibt keinen Durchlauf %1</translation>
    </message>
    <message>
        <source>Look the number up in the history.</source>
        <translation>Sehen Sie die Nummer im Verlauf nach.</translation>
    </message>
    <message>
        <source>run %1 changed another library, %2</source>
        <translation>Durchlauf %1 hat eine andere Bibliothek geändert, %2</translation>
    </message>
    <message>
        <source>Open that library to take the run back.</source>
        <translation>Öffnen Sie jene Bibliothek, um den Durchlauf zurückzunehmen.</translation>
    </message>
    <message>
        <source>run %1 is itself an undo and cannot be undone</source>
        <translation>Durchlauf %1 macht selbst etwas rückgängig und kann nicht rückgängig gemacht werden</translation>
    </message>
    <message>
        <source>Make the changes of run %1 anew instead.</source>
        <translation>Machen Sie stattdessen die Änderungen von Durchlauf %1 noch einmal.</translation>
    </message>
    <message>
        <source>run %1 is still running</source>
        <translation>Durchlauf %1 läuft noch</translation>
    </message>
    <message>
        <source>Wait until it has ended.</source>
        <translation>Warten Sie, bis er zu Ende ist.</translation>
    </message>
    <message>
        <source>run %1 did not change a playlist %2</source>
        <translation>Durchlauf %1 hat keine Wiedergabeliste %2 geändert</translation>
    </message>
    <message>
        <source>Look up in the history which playlists it changed.</source>
        <translation>Sehen Sie im Verlauf nach, welche er geändert hat.</translation>
    </message>
    <message>
        <source>run %1 changed nothing that could be undone</source>
        <translation>Durchlauf %1 hat nichts geändert, was sich rückgängig machen ließe</translation>
    </message>
    <message>
        <source>There is nothing to do.</source>
        <translation>Es gibt nichts zu tun.</translation>
    </message>
    <message>
        <source>run %1 has been undone already by run %2</source>
        <translation>Durchlauf %1 wurde schon rückgängig gemacht, von Durchlauf %2</translation>
    </message>
    <message>
        <source>run %1 has been undone already</source>
        <translation>Durchlauf %1 wurde schon rückgängig gemacht</translation>
    </message>
    <message>
        <source>%1;</source>
        <translation>%1;</translation>
    </message>
    <message numerus="yes">
        <source>and %Ln more;</source>
        <comment>and %Ln more;</comment>
        <translation>
            <numerusform>und %Ln weiteres;</numerusform>
            <numerusform>und %Ln weitere;</numerusform>
        </translation>
    </message>
    <message>
        <source>what run %1 wrote was changed since: %2 and nothing was undone</source>
        <translation>was Durchlauf %1 geschrieben hat, wurde seither geändert: %2 nichts wurde rückgängig gemacht</translation>
    </message>
    <message>
        <source>Undo the other playlists one by one, or leave out those that differ.</source>
        <translation>Machen Sie die anderen Wiedergabelisten einzeln rückgängig, oder lassen Sie die geänderten aus.</translation>
    </message>
    <message>
        <source>%1 was made, but not told where</source>
        <translation>%1 wurde angelegt, aber nicht gesagt, wo</translation>
    </message>
    <message>
        <source>its folder is no longer there: it is at top level now</source>
        <translation>der Ordner ist nicht mehr da: liegt jetzt auf oberster Ebene</translation>
    </message>
    <message>
        <source>%1 is still in the library</source>
        <translation>%1 ist noch in der Bibliothek</translation>
    </message>
    <message>
        <source>it is now called %1</source>
        <translation>heißt jetzt %1</translation>
    </message>
    <message>
        <source>it is now in the folder %1</source>
        <translation>ist jetzt im Ordner %1</translation>
    </message>
    <message>
        <source>it is no longer in the folder %1</source>
        <translation>ist nicht mehr im Ordner %1</translation>
    </message>
    <message>
        <source>its entries were changed from position %1 on</source>
        <translation>die Einträge wurden ab Stelle %1 geändert</translation>
    </message>
    <message>
        <source>its entries were changed from position %1 on (%2 instead of %3)</source>
        <translation>die Einträge wurden ab Stelle %1 geändert (%2 statt %3)</translation>
    </message>
    <message>
        <source>it may be in the trash; the run broke off while moving it</source>
        <translation>ist vielleicht im Papierkorb; der Durchlauf brach beim Verschieben ab</translation>
    </message>
    <message>
        <source>it is no longer in the trash</source>
        <translation>ist nicht mehr im Papierkorb</translation>
    </message>
    <message>
        <source>another file lies in its place in the trash</source>
        <translation>an ihrer Stelle im Papierkorb liegt eine andere Datei</translation>
    </message>
    <message>
        <source>cannot be put back: another file lies in its place in the trash</source>
        <translation>kann nicht zurückgelegt werden: an der Stelle im Papierkorb liegt eine andere Datei</translation>
    </message>
    <message>
        <source>Look for it in the trash.</source>
        <translation>Suchen Sie sie im Papierkorb.</translation>
    </message>
    <message>
        <source>as the run left it</source>
        <translation>wie vom Durchlauf hinterlassen</translation>
    </message>
    <message>
        <source>gone from the library since</source>
        <translation>seither aus der Bibliothek verschwunden</translation>
    </message>
    <message>
        <source>not changed by the run</source>
        <translation>vom Durchlauf nicht geändert</translation>
    </message>
    <message>
        <source>undone</source>
        <translation>rückgängig gemacht</translation>
    </message>
    <message>
        <source>as it was before the run</source>
        <translation>wie vor dem Durchlauf</translation>
    </message>
    <message>
        <source>changed since</source>
        <translation>seither geändert</translation>
    </message>
    <message numerus="yes">
        <source>tracks of %Ln of its old entries are no longer in the library</source>
        <comment>tracks of %Ln of its old entries is no longer in the library</comment>
        <translation>
            <numerusform>der Titel von %Ln der alten Einträge ist nicht mehr in der Bibliothek</numerusform>
            <numerusform>die Titel von %Ln der alten Einträge sind nicht mehr in der Bibliothek</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 will list %Ln tracks more than once.</source>
        <comment>%1 will list %Ln track more than once.</comment>
        <translation>
            <numerusform>%1 wird danach %Ln Titel mehrfach enthalten.</numerusform>
            <numerusform>%1 wird danach %Ln Titel mehrfach enthalten.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>The outline does not show %1, which are in a folder within a folder.</source>
        <comment>The outline does not show %1, which is in a folder within a folder.</comment>
        <translation>
            <numerusform>Die Übersicht zeigt %1 nicht: die Liste liegt in einem Ordner in einem Ordner.</numerusform>
            <numerusform>Die Übersicht zeigt %1 nicht: die Listen liegen in einem Ordner in einem Ordner.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Chosen for the playlists in them, not rebuilt: %1.</source>
        <comment>Chosen for the playlists in it, not rebuilt: %1.</comment>
        <translation>
            <numerusform>Steht für die Wiedergabelisten darin und wird nicht neu aufgebaut: %1.</numerusform>
            <numerusform>Stehen für die Wiedergabelisten darin und werden nicht neu aufgebaut: %1.</numerusform>
        </translation>
    </message>
    <message>
        <source>Left out, because %1: %2.</source>
        <translation>Ausgelassen (%1): %2.</translation>
    </message>
    <message>
        <source>There is not enough memory. Close other programs and try again.</source>
        <translation>Der Arbeitsspeicher reicht nicht. Schließen Sie andere Programme, und versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>That did not work.</source>
        <translation>Das hat nicht geklappt.</translation>
    </message>
    <message>
        <source>The library could not be opened.</source>
        <translation>Die Bibliothek konnte nicht geöffnet werden.</translation>
    </message>
    <message>
        <source>The library could not be read.</source>
        <translation>Die Bibliothek konnte nicht gelesen werden.</translation>
    </message>
    <message>
        <source>The library could not be read again.</source>
        <translation>Die Bibliothek konnte nicht neu gelesen werden.</translation>
    </message>
    <message>
        <source>The tracks could not be added: %1</source>
        <translation>Die Titel konnten nicht hinzugefügt werden: %1</translation>
    </message>
    <message>
        <source>The library is as it was.</source>
        <translation>Die Bibliothek ist, wie sie war.</translation>
    </message>
    <message>
        <source>The search did not end.</source>
        <translation>Die Suche kam nicht zu Ende.</translation>
    </message>
    <message>
        <source>The keepers could not be chosen.</source>
        <translation>Die zu behaltenden Titel konnten nicht gewählt werden.</translation>
    </message>
    <message>
        <source>chosen by you</source>
        <translation>von Ihnen gewählt</translation>
    </message>
    <message>
        <source>has no place: there is no home folder</source>
        <translation>hat keinen Ort: es gibt keinen persönlichen Ordner</translation>
    </message>
    <message>
        <source>could not be written: %1</source>
        <translation>konnte nicht geschrieben werden: %1</translation>
    </message>
    <message>
        <source>See whether there is room on the disk.</source>
        <translation>Sehen Sie nach, ob auf dem Datenträger Platz ist.</translation>
    </message>
    <message>
        <source>there is no place to keep it</source>
        <translation>es gibt keinen Ort dafür</translation>
    </message>
    <message>
        <source>Set HOME, or XDG_DATA_HOME to a folder in which Kestrel may keep its data.</source>
        <translation>Setzen Sie HOME, oder XDG_DATA_HOME auf einen Ordner, in dem Kestrel seine Daten aufbewahren darf.</translation>
    </message>
    <message>
        <source>the history no longer has run %1</source>
        <translation>der Verlauf hat Durchlauf %1 nicht mehr</translation>
    </message>
    <message>
        <source>Open the history again.</source>
        <translation>Öffnen Sie den Verlauf noch einmal.</translation>
    </message>
    <message>
        <source>any folder</source>
        <translation>einem beliebigen Ordner</translation>
    </message>
    <message>
        <source>another playlist has the same persistent ID</source>
        <translation>eine andere Wiedergabeliste hat dieselbe Kennung</translation>
    </message>
    <message>
        <source>the persistent ID %1 is that of several tracks</source>
        <translation>die Kennung %1 haben mehrere Titel</translation>
    </message>
    <message>
        <source>Broke off before %1.</source>
        <translation>Abgebrochen vor %1.</translation>
    </message>
    <message>
        <source>it was not moved, as the history could not be written</source>
        <translation>nicht verschoben, weil der Verlauf nicht geschrieben werden konnte</translation>
    </message>
    <message>
        <source>it cannot be read</source>
        <translation>kann nicht gelesen werden</translation>
    </message>
    <message>
        <source>the file that is kept is no regular file</source>
        <translation>die Datei, die behalten wird, ist keine gewöhnliche Datei</translation>
    </message>
    <message>
        <source>the file that is kept is empty</source>
        <translation>die Datei, die behalten wird, ist leer</translation>
    </message>
    <message>
        <source>the file that is kept cannot be read as audio</source>
        <translation>die Datei, die behalten wird, ist nicht als Audio lesbar</translation>
    </message>
    <message>
        <source>the copy that is kept is only in the cloud</source>
        <translation>die Kopie, die behalten wird, ist nur in der Cloud</translation>
    </message>
    <message>
        <source>what is kept in its place is not in the library</source>
        <translation>was an ihrer Stelle behalten wird, ist nicht in der Bibliothek</translation>
    </message>
    <message>
        <source>it is not the file of its track</source>
        <translation>nicht die Datei ihres Titels</translation>
    </message>
    <message>
        <source>it cannot be read as audio</source>
        <translation>nicht als Audio lesbar</translation>
    </message>
    <message>
        <source>it lies outside the library&apos;s media folder</source>
        <translation>liegt außerhalb des Medienordners der Bibliothek</translation>
    </message>
    <message>
        <source>it is one of Kestrel&apos;s own files</source>
        <translation>eine von Kestrels eigenen Dateien</translation>
    </message>
    <message>
        <source>it was changed since it was looked through</source>
        <translation>sie wurde geändert, seit sie durchgesehen wurde</translation>
    </message>
    <message>
        <source>The track could not be shown.</source>
        <translation>Der Titel konnte nicht gezeigt werden.</translation>
    </message>
    <message>
        <source>Your settings cannot be kept.</source>
        <translation>Ihre Einstellungen können nicht gespeichert werden.</translation>
    </message>
    <message>
        <source>One moment...</source>
        <translation>Einen Moment…</translation>
    </message>
    <message>
        <source>Re-itemizing music library...</source>
        <translation>Die Musikbibliothek wird neu gelesen…</translation>
    </message>
    <message>
        <source>Itemizing music library...</source>
        <translation>Die Musikbibliothek wird gelesen…</translation>
    </message>
    <message>
        <source>YES</source>
        <translation>Ja</translation>
    </message>
    <message>
        <source>NO</source>
        <translation>Nein</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Remote</source>
        <translation>Entfernt</translation>
    </message>
    <message>
        <source>Cloud</source>
        <translation>Cloud</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Unbekannt</translation>
    </message>
    <message>
        <source>Matched</source>
        <translation>Abgeglichen</translation>
    </message>
    <message>
        <source>Purchased</source>
        <translation>Gekauft</translation>
    </message>
    <message>
        <source>Uploaded</source>
        <translation>Hochgeladen</translation>
    </message>
    <message>
        <source>Subscription</source>
        <translation>Abonnement</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>Looking for dupes...</source>
        <translation>Duplikate werden gesucht…</translation>
    </message>
    <message>
        <source>AAC</source>
        <translation>AAC</translation>
    </message>
    <message>
        <source>AIFF</source>
        <translation>AIFF</translation>
    </message>
    <message>
        <source>Apple Lossless</source>
        <translation>Apple Lossless</translation>
    </message>
    <message>
        <source>MP3</source>
        <translation>MP3</translation>
    </message>
    <message>
        <source>WAV</source>
        <translation>WAV</translation>
    </message>
    <message>
        <source>Local files</source>
        <translation>Lokale Dateien</translation>
    </message>
    <message>
        <source>Cloud tracks</source>
        <translation>Cloud-Titel</translation>
    </message>
    <message>
        <source>Oldest Date Added</source>
        <translation>Ältestes Hinzufügedatum</translation>
    </message>
    <message>
        <source>Most Played</source>
        <translation>Meiste Wiedergaben</translation>
    </message>
    <message>
        <source>Most Recently Played</source>
        <translation>Zuletzt gespielt</translation>
    </message>
    <message>
        <source>Highest Bit Rate</source>
        <translation>Höchste Bitrate</translation>
    </message>
    <message>
        <source>Folder Location</source>
        <translation>Ablage im Ordner</translation>
    </message>
    <message>
        <source>Newest Date Added</source>
        <translation>Neuestes Hinzufügedatum</translation>
    </message>
    <message>
        <source>Least Played</source>
        <translation>Wenigste Wiedergaben</translation>
    </message>
    <message>
        <source>Least Recently Played</source>
        <translation>Am längsten nicht gespielt</translation>
    </message>
    <message>
        <source>Lowest Bit Rate</source>
        <translation>Niedrigste Bitrate</translation>
    </message>
    <message>
        <source>Shortest File Name</source>
        <translation>Kürzester Dateiname</translation>
    </message>
    <message>
        <source>Single Arbitrary</source>
        <translation>Ein beliebiger</translation>
    </message>
    <message>
        <source>Oldest Date Modified</source>
        <translation>Ältestes Änderungsdatum</translation>
    </message>
    <message>
        <source>Newest Date Modified</source>
        <translation>Neuestes Änderungsdatum</translation>
    </message>
    <message>
        <source>Largest File Size</source>
        <translation>Größte Datei</translation>
    </message>
    <message>
        <source>Smallest File Size</source>
        <translation>Kleinste Datei</translation>
    </message>
    <message>
        <source>Date Added</source>
        <translation>Hinzugefügt</translation>
    </message>
    <message>
        <source>Plays</source>
        <translation>Wiedergaben</translation>
    </message>
    <message>
        <source>Last Played</source>
        <translation>Zuletzt gespielt</translation>
    </message>
    <message>
        <source>Bit Rate</source>
        <translation>Bitrate</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>Ort</translation>
    </message>
    <message>
        <source>File Name</source>
        <translation>Dateiname</translation>
    </message>
    <message>
        <source>Date Modified</source>
        <translation>Geändert</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Filtering by %1</source>
        <translation>Auswahl nach: %1</translation>
    </message>
    <message>
        <source>Fetching playlists...</source>
        <translation>Wiedergabelisten werden geholt…</translation>
    </message>
    <message>
        <source>No results.</source>
        <translation>Keine Ergebnisse.</translation>
    </message>
    <message>
        <source>more than one track of the group is kept</source>
        <translation>mehr als ein Titel der Gruppe behalten wird</translation>
    </message>
    <message>
        <source>Checking groups...</source>
        <translation>Gruppen werden geprüft…</translation>
    </message>
    <message>
        <source>One or more Dupe Groups contain more than one Keeper track.</source>
        <translation>In mindestens einer Gruppe wird mehr als ein Titel behalten.</translation>
    </message>
    <message>
        <source>Make sure only one track per Dupe Group is designated as a Keeper.</source>
        <translation>Sorgen Sie dafür, dass in jeder Gruppe nur ein Titel behalten wird.</translation>
    </message>
    <message>
        <source>Sorting playlists...</source>
        <translation>Wiedergabelisten werden geordnet…</translation>
    </message>
    <message>
        <source>Each of the playlists below contain at least one non-Keeper track as currently Filtered by </source>
        <translation>Jede der Wiedergabelisten unten enthält mindestens einen Titel, der nicht behalten wird. Die Regel ist </translation>
    </message>
    <message>
        <source>To display a selected playlist&apos;s Non-Keeper tracks, click </source>
        <translation>Die Titel einer ausgewählten Liste, die nicht behalten werden, zeigt </translation>
    </message>
    <message>
        <source>Show Tracks.</source>
        <translation>Titel einblenden.</translation>
    </message>
    <message>
        <source>Click </source>
        <translation>Mit </translation>
    </message>
    <message>
        <source> to re-populate selected playlists with Keeper tracks.</source>
        <translation> kommen in die ausgewählten Listen die behaltenen Titel.</translation>
    </message>
    <message>
        <source>Keepers</source>
        <translation>Behaltene</translation>
    </message>
    <message>
        <source>Shortest Filename</source>
        <translation>Kürzester Dateiname</translation>
    </message>
    <message>
        <source>Arbitrary</source>
        <translation>Beliebig</translation>
    </message>
    <message>
        <source>(Arbitrary)</source>
        <translation>(Beliebig)</translation>
    </message>
    <message>
        <source>(Shortest Filename)</source>
        <translation>(Kürzester Dateiname)</translation>
    </message>
    <message>
        <source>#%1</source>
        <translation>Nr. %1</translation>
    </message>
    <message>
        <source>Disc %1</source>
        <translation>CD %1</translation>
    </message>
    <message>
        <source>(Multiple Playlists)</source>
        <translation>(Mehrere Wiedergabelisten)</translation>
    </message>
    <message>
        <source>Refreshing playlists...</source>
        <translation>Wiedergabelisten werden neu gelesen…</translation>
    </message>
    <message>
        <source>Keep</source>
        <translation>Behalten</translation>
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
        <source>Kind</source>
        <translation>Art</translation>
    </message>
    <message>
        <source>Rating</source>
        <translation>Wertung</translation>
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
        <source>Last Skipped</source>
        <translation>Zuletzt übersprungen</translation>
    </message>
    <message>
        <source>Compilation</source>
        <translation>Compilation</translation>
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
    <message>
        <source>Available</source>
        <translation>Vorhanden</translation>
    </message>
    <message>
        <source>Missing</source>
        <translation>Fehlt</translation>
    </message>
    <message>
        <source>Stream</source>
        <translation>Stream</translation>
    </message>
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
        <source>Track Number</source>
        <translation>Titelnummer</translation>
    </message>
    <message>
        <source>track number</source>
        <translation>Titelnummer</translation>
    </message>
    <message>
        <source>Disc Number</source>
        <translation>CD-Nummer</translation>
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
        <source>Beats per Minute</source>
        <translation>Schläge pro Minute</translation>
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
    <message>
        <source>Zero KB</source>
        <translation>0 KB</translation>
    </message>
    <message>
        <source>What the history has of these tracks cannot be read</source>
        <translation>Was der Verlauf von diesen Titeln hat, kann nicht gelesen werden</translation>
    </message>
    <message>
        <source>cannot be made what it was: it, or the history, is damaged</source>
        <translation>kann nicht wiederhergestellt werden: Sie selbst oder der Verlauf ist beschädigt</translation>
    </message>
    <message>
        <source>Put the latest backup in its place.</source>
        <translation>Setzen Sie die jüngste Sicherung an ihre Stelle.</translation>
    </message>
    <message>
        <source>The music application cannot bring tracks back</source>
        <translation>Das Musikprogramm kann Titel nicht zurückholen</translation>
    </message>
    <message>
        <source>%1 was not imported. Look at the log, and at %2</source>
        <translation>%1 wurde nicht importiert. Sehen Sie ins Protokoll und in %2</translation>
    </message>
    <message>
        <source>A quotation mark in a name or path would make another command of this.</source>
        <translation>Ein Anführungszeichen in einem Namen oder Pfad würde daraus einen anderen Befehl machen.</translation>
    </message>
    <message>
        <source>what was to be replaced in it stays in the library</source>
        <translation>was darin ersetzt werden sollte, bleibt in der Bibliothek</translation>
    </message>
    <message>
        <source>other tracks left the library than were to leave it</source>
        <translation>andere Titel verließen die Bibliothek als vorgesehen</translation>
    </message>
    <message>
        <source>Removed from the library: %1.</source>
        <translation>Aus der Bibliothek entfernt: %1.</translation>
    </message>
    <message>
        <source>There was nothing to undo.</source>
        <translation>Es gab nichts rückgängig zu machen.</translation>
    </message>
    <message>
        <source>the library was changed since it was made</source>
        <translation>die Bibliothek wurde seither geändert</translation>
    </message>
    <message>
        <source>another track has the same persistent ID</source>
        <translation>ein anderer Titel hat dieselbe Kennung</translation>
    </message>
    <message>
        <source>the playlist %1 still lists it</source>
        <translation>die Wiedergabeliste %1 führt ihn noch auf</translation>
    </message>
    <message>
        <source>its track stays in the library</source>
        <translation>ihr Titel bleibt in der Bibliothek</translation>
    </message>
    <message>
        <source>run %1 removed tracks too, and can only be undone whole</source>
        <translation>Durchlauf %1 hat auch Titel entfernt und kann nur im Ganzen rückgängig gemacht werden</translation>
    </message>
    <message>
        <source>Take it back without naming a playlist.</source>
        <translation>Nehmen Sie ihn zurück, ohne eine Wiedergabeliste zu nennen.</translation>
    </message>
    <message>
        <source>it was as before the run already</source>
        <translation>war schon wie vor dem Durchlauf</translation>
    </message>
    <message>
        <source>the plan names it twice</source>
        <translation>der Plan nennt ihn zweimal</translation>
    </message>
    <message>
        <source>Leave out what differs, to undo the rest.</source>
        <translation>Lassen Sie aus, was abweicht, um den Rest rückgängig zu machen.</translation>
    </message>
    <message>
        <source>it was gone: a new playlist has those of its old entries that the library knows</source>
        <translation>sie war weg: Eine neue Wiedergabeliste hat diejenigen ihrer alten Einträge, die die Bibliothek kennt</translation>
    </message>
    <message>
        <source>is no library that Kestrel can open</source>
        <translation>ist keine Bibliothek, die Kestrel öffnen kann</translation>
    </message>
    <message>
        <source>It opens these: %1</source>
        <translation>Es öffnet diese: %1</translation>
    </message>
    <message>
        <source>Library documents</source>
        <translation>Bibliotheksdokumente</translation>
    </message>
    <message>
        <source>%1: only Strawberry itself takes files into its collection. Put it into one of its folders</source>
        <translation>%1: Nur Strawberry selbst nimmt Dateien in seine Sammlung auf. Legen Sie sie in einen seiner Ordner</translation>
    </message>
    <message>
        <source>is in use by another program</source>
        <translation>wird von einem anderen Programm benutzt</translation>
    </message>
    <message>
        <source>Close Strawberry first, then try again.</source>
        <translation>Schließen Sie zuerst Strawberry, und versuchen Sie es dann noch einmal.</translation>
    </message>
    <message>
        <source>cannot be read: %1</source>
        <translation>kann nicht gelesen werden: %1</translation>
    </message>
    <message>
        <source>It is damaged, or no database: put a backup in its place.</source>
        <translation>Sie ist beschädigt oder keine Datenbank: Setzen Sie eine Sicherung an ihre Stelle.</translation>
    </message>
    <message>
        <source>cannot be written: there is no room</source>
        <translation>kann nicht geschrieben werden: Es ist kein Platz da</translation>
    </message>
    <message>
        <source>cannot be used: %1</source>
        <translation>kann nicht benutzt werden: %1</translation>
    </message>
    <message>
        <source>is no database of Strawberry&apos;s</source>
        <translation>ist keine Datenbank von Strawberry</translation>
    </message>
    <message>
        <source>Give the path of its strawberry.db.</source>
        <translation>Geben Sie den Pfad seiner strawberry.db an.</translation>
    </message>
    <message>
        <source>cannot be changed while Strawberry runs, which would undo it</source>
        <translation>kann nicht geändert werden, während Strawberry läuft: Es würde die Änderung zunichtemachen</translation>
    </message>
    <message>
        <source>is open in another program, such as Strawberry</source>
        <translation>ist in einem anderen Programm geöffnet, etwa in Strawberry</translation>
    </message>
    <message>
        <source>Strawberry has no database here: it has never been started, or keeps it elsewhere</source>
        <translation>Strawberry hat hier keine Datenbank: Es wurde noch nie gestartet, oder sie liegt woanders</translation>
    </message>
    <message>
        <source>Strawberry&apos;s collection</source>
        <translation>Sammlung von Strawberry</translation>
    </message>
    <message>
        <source>Rhythmbox adds files only while it runs</source>
        <translation>Rhythmbox nimmt nur Dateien auf, während es läuft</translation>
    </message>
    <message>
        <source>%1: Rhythmbox does not take this file</source>
        <translation>%1: Rhythmbox nimmt diese Datei nicht an</translation>
    </message>
    <message>
        <source>There is a playlist %1 already</source>
        <translation>Es gibt schon eine Wiedergabeliste %1</translation>
    </message>
    <message>
        <source>Rhythmbox has no folders of playlists</source>
        <translation>Rhythmbox hat keine Ordner für Wiedergabelisten</translation>
    </message>
    <message>
        <source>Rhythmbox itself removes the tracks whose files are gone</source>
        <translation>Rhythmbox entfernt selbst die Titel, deren Dateien fort sind</translation>
    </message>
    <message>
        <source>shares its name with another, and Rhythmbox, while it runs, knows playlists by name alone</source>
        <translation>trägt den Namen einer anderen, und solange Rhythmbox läuft, kennt es Wiedergabelisten nur am Namen</translation>
    </message>
    <message>
        <source>The playlist %1 would list a track twice, which Rhythmbox does not do</source>
        <translation>Die Wiedergabeliste %1 enthielte einen Titel zweimal; das kennt Rhythmbox nicht</translation>
    </message>
    <message>
        <source>Close Rhythmbox, then try again.</source>
        <translation>Schließen Sie Rhythmbox und versuchen Sie es erneut.</translation>
    </message>
    <message>
        <source>Rhythmbox runs but does not say what its playlists hold: %1</source>
        <translation>Rhythmbox läuft, sagt aber nicht, was seine Wiedergabelisten enthalten: %1</translation>
    </message>
    <message>
        <source>Try again, or close Rhythmbox.</source>
        <translation>Versuchen Sie es erneut oder schließen Sie Rhythmbox.</translation>
    </message>
    <message>
        <source>Rhythmbox runs with another library than this</source>
        <translation>Rhythmbox läuft mit einer anderen Mediathek als dieser</translation>
    </message>
    <message>
        <source>it cannot be found out whether Rhythmbox runs: %1</source>
        <translation>es ist nicht festzustellen, ob Rhythmbox läuft: %1</translation>
    </message>
    <message>
        <source>Try again in the session in which Rhythmbox is used.</source>
        <translation>Versuchen Sie es erneut in der Sitzung, in der Rhythmbox benutzt wird.</translation>
    </message>
    <message>
        <source>Rhythmbox runs, with this library or another</source>
        <translation>Rhythmbox läuft, mit dieser Mediathek oder einer anderen</translation>
    </message>
    <message>
        <source>Rhythmbox was closed since its library was read</source>
        <translation>Rhythmbox wurde geschlossen, seit seine Mediathek gelesen wurde</translation>
    </message>
    <message>
        <source>Rhythmbox was started since its library was read</source>
        <translation>Rhythmbox wurde gestartet, seit seine Mediathek gelesen wurde</translation>
    </message>
    <message>
        <source>the playlist %1 cannot be changed while Rhythmbox runs: %2</source>
        <translation>die Wiedergabeliste %1 kann nicht geändert werden, während Rhythmbox läuft: %2</translation>
    </message>
    <message>
        <source>it would lose the entry %1, whose file is not there</source>
        <translation>sie verlöre den Eintrag %1, dessen Datei nicht da ist</translation>
    </message>
    <message>
        <source>Rhythmbox did not make the playlist %1 what it was told to</source>
        <translation>Rhythmbox hat aus der Wiedergabeliste %1 nicht gemacht, was ihm gesagt wurde</translation>
    </message>
    <message>
        <source>Rhythmbox does not answer: %1</source>
        <translation>Rhythmbox antwortet nicht: %1</translation>
    </message>
    <message>
        <source>playlists that Rhythmbox was changing when it broke off were not given their old entries back: %1</source>
        <translation>Wiedergabelisten, deren Änderung in Rhythmbox abgebrochen ist, haben ihre alten Einträge nicht zurückbekommen: %1</translation>
    </message>
    <message>
        <source>there is no library of Rhythmbox here</source>
        <translation>hier gibt es keine Mediathek von Rhythmbox</translation>
    </message>
    <message>
        <source>Start Rhythmbox once, or say in which folder it is.</source>
        <translation>Starten Sie Rhythmbox einmal, oder geben Sie an, in welchem Ordner sie liegt.</translation>
    </message>
    <message>
        <source>Rhythmbox</source>
        <translation>Rhythmbox</translation>
    </message>
    <message>
        <source>expected the element %1</source>
        <translation>erwartet wird das Element %1</translation>
    </message>
    <message>
        <source>cannot be read as XML: %1</source>
        <translation>ist nicht als XML zu lesen: %1</translation>
    </message>
    <message>
        <source>Put a copy of the file in its place, or have its program write it again.</source>
        <translation>Setzen Sie eine Kopie der Datei an ihre Stelle, oder lassen Sie ihr Programm sie neu schreiben.</translation>
    </message>
    <message>
        <source>it lists all of them already</source>
        <translation>sie enthält alle bereits</translation>
    </message>
    <message>
        <source>another playlist has its name</source>
        <translation>eine andere Wiedergabeliste trägt ihren Namen</translation>
    </message>
    <message>
        <source>the address names no folder of music</source>
        <translation>die Adresse nennt keinen Musikordner</translation>
    </message>
    <message>
        <source>Write ?music=/the/folder behind it.</source>
        <translation>Schreiben Sie ?music=/der/Ordner dahinter.</translation>
    </message>
    <message>
        <source>an address holds no password, since addresses are kept and shown</source>
        <translation>eine Adresse enthält kein Passwort, da Adressen aufbewahrt und gezeigt werden</translation>
    </message>
    <message>
        <source>Set MPD_HOST to PASSWORD@HOST, and open %1.</source>
        <translation>Setzen Sie MPD_HOST auf PASSWORT@RECHNER und öffnen Sie %1.</translation>
    </message>
    <message>
        <source>is no address of a music player</source>
        <translation>ist keine Adresse eines Musikspielers</translation>
    </message>
    <message>
        <source>Write mpd:, mpd://HOST:PORT or mpd:/PATH/OF/SOCKET.</source>
        <translation>Schreiben Sie mpd:, mpd://RECHNER:PORT oder mpd:/PFAD/DES/SOCKETS.</translation>
    </message>
    <message>
        <source>The music player does not tell where its music lies</source>
        <translation>Der Musikspieler sagt nicht, wo seine Musik liegt</translation>
    </message>
    <message>
        <source>%1: it has to be moved into the folder of the music player first, %2</source>
        <translation>%1: Die Datei muss zuerst in den Ordner des Musikspielers verschoben werden, %2</translation>
    </message>
    <message>
        <source>%1: the music player does not take it for audio</source>
        <translation>%1: Der Musikspieler hält sie nicht für Audio</translation>
    </message>
    <message>
        <source>The music player cannot have a playlist of the name %1</source>
        <translation>Der Musikspieler kann keine Playlist mit dem Namen %1 haben</translation>
    </message>
    <message>
        <source>There is a playlist of the name %1 already</source>
        <translation>Es gibt schon eine Playlist mit dem Namen %1</translation>
    </message>
    <message>
        <source>The music player cannot have an empty playlist while it has no songs</source>
        <translation>Der Musikspieler kann keine leere Playlist haben, solange er keine Titel hat</translation>
    </message>
    <message>
        <source>A song leaves the music player when its file does: move that to the trash</source>
        <translation>Ein Titel verlässt den Musikspieler mit seiner Datei: Legen Sie diese in den Papierkorb</translation>
    </message>
    <message>
        <source>A song comes back to the music player with its file</source>
        <translation>Ein Titel kommt mit seiner Datei in den Musikspieler zurück</translation>
    </message>
    <message>
        <source>The music player has no folders of playlists</source>
        <translation>Der Musikspieler hat keine Ordner für Playlists</translation>
    </message>
    <message>
        <source>the playlist %1 was changed since it was read</source>
        <translation>die Playlist %1 wurde geändert, seit sie gelesen wurde</translation>
    </message>
    <message>
        <source>does not accept the password</source>
        <translation>nimmt das Passwort nicht an</translation>
    </message>
    <message>
        <source>does not permit this without a password, or not to this one: %1</source>
        <translation>erlaubt dies nicht ohne Passwort oder nicht mit diesem: %1</translation>
    </message>
    <message>
        <source>refuses: %1</source>
        <translation>lehnt ab: %1</translation>
    </message>
    <message>
        <source>Set MPD_HOST to PASSWORD@HOST.</source>
        <translation>Setzen Sie MPD_HOST auf PASSWORT@RECHNER.</translation>
    </message>
    <message>
        <source>cannot be reached: %1</source>
        <translation>ist nicht zu erreichen: %1</translation>
    </message>
    <message>
        <source>Start the music player, or look up its address.</source>
        <translation>Starten Sie den Musikspieler oder schlagen Sie seine Adresse nach.</translation>
    </message>
    <message>
        <source>the connection was lost: %1</source>
        <translation>die Verbindung ging verloren: %1</translation>
    </message>
    <message>
        <source>See that the music player runs, and try again.</source>
        <translation>Sehen Sie nach, ob der Musikspieler läuft, und versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>no music player answers at the usual places</source>
        <translation>an den üblichen Stellen antwortet kein Musikspieler</translation>
    </message>
    <message>
        <source>Start it, or give its address as mpd://HOST:PORT.</source>
        <translation>Starten Sie ihn oder nennen Sie seine Adresse als mpd://RECHNER:PORT.</translation>
    </message>
    <message>
        <source>was changed since it was read</source>
        <translation>wurde geändert, seit es gelesen wurde</translation>
    </message>
    <message>
        <source>Read the library again, and repeat what was to be done.</source>
        <translation>Lesen Sie die Bibliothek neu ein und wiederholen Sie, was getan werden sollte.</translation>
    </message>
    <message>
        <source>the playlist %1 cannot be read: %2</source>
        <translation>die Playlist %1 kann nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>If it is very long, raise max_output_buffer_size in the settings of the music player.</source>
        <translation>Falls sie sehr lang ist, erhöhen Sie max_output_buffer_size in den Einstellungen des Musikspielers.</translation>
    </message>
    <message>
        <source>the list is as long as the server allows, and to change it takes an entry more: raise max_playlist_length in its settings</source>
        <translation>die Liste ist so lang, wie der Server erlaubt, und um sie zu ändern, braucht es einen Eintrag mehr: Erhöhen Sie max_playlist_length in seinen Einstellungen</translation>
    </message>
    <message>
        <source>%1 What became of the list is not known</source>
        <translation>%1 Was aus der Liste wurde, ist nicht bekannt</translation>
    </message>
    <message>
        <source>%1 The list was changed in part</source>
        <translation>%1 Die Liste wurde zum Teil geändert</translation>
    </message>
    <message>
        <source>the list is not what was written to it: another program changes it, or the server</source>
        <translation>die Liste ist nicht, was in sie geschrieben wurde: Ein anderes Programm ändert sie, oder der Server</translation>
    </message>
    <message>
        <source>its file stays</source>
        <translation>ihre Datei bleibt</translation>
    </message>
    <message>
        <source>only a part was undone: %1</source>
        <translation>nur ein Teil wurde rückgängig gemacht: %1</translation>
    </message>
    <message>
        <source>Music Player Daemon (mpd:)</source>
        <translation>Music Player Daemon (mpd:)</translation>
    </message>
    <message>
        <source>A folder has the files that lie in it: put the file there, then read the library again</source>
        <translation>Ein Ordner hat die Dateien, die in ihm liegen: Legen Sie die Datei dorthin, und lesen Sie die Bibliothek neu ein</translation>
    </message>
    <message>
        <source>Only playlists that are files can be deleted</source>
        <translation>Nur Wiedergabelisten, die Dateien sind, können gelöscht werden</translation>
    </message>
    <message>
        <source>A folder has the files that lie in it: a track leaves when its file goes to the trash</source>
        <translation>Ein Ordner hat die Dateien, die in ihm liegen: Ein Titel verlässt ihn, wenn seine Datei in den Papierkorb kommt</translation>
    </message>
    <message>
        <source>A folder has the files that lie in it: a track comes back when its file does</source>
        <translation>Ein Ordner hat die Dateien, die in ihm liegen: Ein Titel kommt zurück, wenn seine Datei zurückkommt</translation>
    </message>
    <message>
        <source>There is a playlist file %1 already</source>
        <translation>Es gibt schon eine Wiedergabeliste %1</translation>
    </message>
    <message>
        <source>%1, such as %2</source>
        <translation>%1, etwa %2</translation>
    </message>
    <message>
        <source>Name a folder.</source>
        <translation>Geben Sie einen Ordner an.</translation>
    </message>
    <message>
        <source>was not read to its end, as you stopped it</source>
        <translation>wurde nicht zu Ende gelesen, weil Sie es angehalten haben</translation>
    </message>
    <message>
        <source>Open it again to go on from there.</source>
        <translation>Öffnen Sie ihn noch einmal, um von dort weiterzumachen.</translation>
    </message>
    <message>
        <source>holds no audio files that Kestrel can read</source>
        <translation>enthält keine Audiodateien, die Kestrel lesen kann</translation>
    </message>
    <message>
        <source>Name the folder in which your music is.</source>
        <translation>Geben Sie den Ordner an, in dem Ihre Musik liegt.</translation>
    </message>
    <message numerus="yes">
        <source>%Ln files have no audio that can be read</source>
        <comment>%Ln file has no audio that can be read</comment>
        <translation>
            <numerusform>%Ln Datei hat keinen Ton, der gelesen werden kann</numerusform>
            <numerusform>%Ln Dateien haben keinen Ton, der gelesen werden kann</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln files and folders are closed to you</source>
        <comment>%Ln file or folder is closed to you</comment>
        <translation>
            <numerusform>%Ln Datei oder Ordner darf nicht gelesen werden</numerusform>
            <numerusform>%Ln Dateien und Ordner dürfen nicht gelesen werden</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln links lead out of the folder and were not followed</source>
        <comment>%Ln link leads out of the folder and was not followed</comment>
        <translation>
            <numerusform>%Ln Verknüpfung führt aus dem Ordner hinaus und wurde nicht verfolgt</numerusform>
            <numerusform>%Ln Verknüpfungen führen aus dem Ordner hinaus und wurden nicht verfolgt</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln files have no title in their tags</source>
        <comment>%Ln file has no title in its tags</comment>
        <translation>
            <numerusform>%Ln Datei hat in ihren Tags keinen Namen</numerusform>
            <numerusform>%Ln Dateien haben in ihren Tags keinen Namen</numerusform>
        </translation>
    </message>
    <message>
        <source>Folders of audio files</source>
        <translation>Ordner mit Audiodateien</translation>
    </message>
    <message>
        <source>is a playlist in UTF-16, which Kestrel does not read</source>
        <translation>ist eine Wiedergabeliste in UTF-16, das Kestrel nicht liest</translation>
    </message>
    <message>
        <source>Save it in UTF-8.</source>
        <translation>Speichern Sie sie in UTF-8.</translation>
    </message>
    <message>
        <source>a tag that does not end</source>
        <translation>ein Tag, das nicht endet</translation>
    </message>
    <message>
        <source>an end tag that ends nothing</source>
        <translation>ein schließendes Tag, das nichts schließt</translation>
    </message>
    <message>
        <source>no list of tracks that ends</source>
        <translation>keine Titelliste, die endet</translation>
    </message>
    <message>
        <source>Reading files: %1 of %2</source>
        <translation>Dateien werden gelesen: %1 von %2</translation>
    </message>
    <message>
        <source>Copy it again.</source>
        <translation>Kopieren Sie sie noch einmal.</translation>
    </message>
    <message>
        <source>Repair the file at that place, or copy it again.</source>
        <translation>Reparieren Sie die Datei an dieser Stelle, oder kopieren Sie sie noch einmal.</translation>
    </message>
    <message>
        <source>it is a library</source>
        <translation>es ist eine Bibliothek</translation>
    </message>
    <message>
        <source>it is the library&apos;s own file</source>
        <translation>die Datei der Bibliothek selbst</translation>
    </message>
    <message numerus="yes">
        <source>%1 of %Ln files are not where this library says (%2/...)</source>
        <comment>%1 of %Ln file is not where this library says (%2/...)</comment>
        <translation>
            <numerusform>%1 von %Ln Datei ist nicht da, wo diese Bibliothek sagt (%2/...)</numerusform>
            <numerusform>%1 von %Ln Dateien sind nicht da, wo diese Bibliothek sagt (%2/...)</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Found there: %1 of %Ln missing files.</source>
        <comment>Found there: %1 of %Ln missing file.</comment>
        <translation>
            <numerusform>Dort gefunden: %1 von %Ln fehlenden Datei.</numerusform>
            <numerusform>Dort gefunden: %1 von %Ln fehlenden Dateien.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln files: %1 → %2</source>
        <comment>%Ln file: %1 → %2</comment>
        <translation>
            <numerusform>%Ln Datei: %1 → %2</numerusform>
            <numerusform>%Ln Dateien: %1 → %2</numerusform>
        </translation>
    </message>
    <message>
        <source>these are no decisions that can be read: %1 is not %2</source>
        <translation>das sind keine lesbaren Entscheidungen: %1 ist nicht %2</translation>
    </message>
    <message>
        <source>Mend the file, or take a copy of it that was saved earlier.</source>
        <translation>Berichtigen Sie die Datei, oder nehmen Sie eine früher gesicherte Kopie.</translation>
    </message>
    <message>
        <source>an object</source>
        <translation>ein Objekt</translation>
    </message>
    <message>
        <source>this is no JSON</source>
        <translation>das ist kein JSON</translation>
    </message>
    <message>
        <source>a file of decisions</source>
        <translation>eine Datei mit Entscheidungen</translation>
    </message>
    <message>
        <source>another version of Kestrel has written it</source>
        <translation>eine andere Version von Kestrel hat sie geschrieben</translation>
    </message>
    <message>
        <source>Use that version.</source>
        <translation>Verwenden Sie diese Version.</translation>
    </message>
    <message>
        <source>Document</source>
        <translation>Dokument</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>MPD</source>
        <translation>MPD</translation>
    </message>
    <message>
        <source>Strawberry</source>
        <translation>Strawberry</translation>
    </message>
    <message numerus="yes">
        <source>Review %Ln groups</source>
        <comment>Review %Ln group</comment>
        <translation>
            <numerusform>%Ln Gruppe prüfen</numerusform>
            <numerusform>%Ln Gruppen prüfen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln songs</source>
        <comment>%Ln song</comment>
        <translation>
            <numerusform>%Ln Titel</numerusform>
            <numerusform>%Ln Titel</numerusform>
        </translation>
    </message>
    <message>
        <source>Lossless First</source>
        <translation>Verlustfrei zuerst</translation>
    </message>
    <message>
        <source>Highest Rating</source>
        <translation>Höchste Bewertung</translation>
    </message>
    <message>
        <source>In Most Playlists</source>
        <translation>In den meisten Wiedergabelisten</translation>
    </message>
    <message>
        <source>Most Complete Tags</source>
        <translation>Vollständigste Angaben</translation>
    </message>
    <message>
        <source>With Cover</source>
        <translation>Mit Cover</translation>
    </message>
    <message>
        <source>Local Before Cloud</source>
        <translation>Lokal vor Cloud</translation>
    </message>
    <message>
        <source>Order of Folders</source>
        <translation>Reihenfolge der Ordner</translation>
    </message>
    <message>
        <source>Order of Kinds</source>
        <translation>Reihenfolge der Arten</translation>
    </message>
    <message>
        <source>Album with Most Tracks</source>
        <translation>Album mit den meisten Titeln</translation>
    </message>
    <message>
        <source>no rating</source>
        <translation>keine Bewertung</translation>
    </message>
    <message numerus="yes">
        <source>%Ln filled fields</source>
        <comment>%Ln filled field</comment>
        <translation>
            <numerusform>%Ln ausgefülltes Feld</numerusform>
            <numerusform>%Ln ausgefüllte Felder</numerusform>
        </translation>
    </message>
    <message>
        <source>with a cover</source>
        <translation>mit Cover</translation>
    </message>
    <message>
        <source>without a cover</source>
        <translation>ohne Cover</translation>
    </message>
    <message>
        <source>local</source>
        <translation>lokal</translation>
    </message>
    <message>
        <source>in the cloud</source>
        <translation>in der Cloud</translation>
    </message>
    <message>
        <source>place %1</source>
        <translation>Platz %1</translation>
    </message>
    <message numerus="yes">
        <source>%Ln tracks of the album</source>
        <comment>%Ln track of the album</comment>
        <translation>
            <numerusform>%Ln Titel des Albums</numerusform>
            <numerusform>%Ln Titel des Albums</numerusform>
        </translation>
    </message>
    <message>
        <source>tie at %1</source>
        <translation>Gleichstand bei %1</translation>
    </message>
    <message numerus="yes">
        <source>%Ln tracks in %1</source>
        <comment>%Ln track in %1</comment>
        <translation>
            <numerusform>%Ln Titel in %1</numerusform>
            <numerusform>%Ln Titel in %1</numerusform>
        </translation>
    </message>
    <message>
        <source>nothing is known of it</source>
        <translation>darüber ist nichts bekannt</translation>
    </message>
    <message>
        <source>%1, then %2</source>
        <translation>%1, dann %2</translation>
    </message>
    <message>
        <source>picks contradict each other: undecided, all are kept</source>
        <translation>die Auswahlen widersprechen sich: unentschieden, alle bleiben</translation>
    </message>
    <message>
        <source>picked by hand</source>
        <translation>von Hand ausgewählt</translation>
    </message>
    <message numerus="yes">
        <source>picked by hand; %Ln copies are new since</source>
        <comment>picked by hand; %Ln copy is new since</comment>
        <translation>
            <numerusform>von Hand ausgewählt; %Ln Kopie ist seitdem neu</numerusform>
            <numerusform>von Hand ausgewählt; %Ln Kopien sind seitdem neu</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln songs are not searched: the library gives no &quot;Track Type&quot; for them, so that it is not known whether they are files</source>
        <comment>%Ln song is not searched: the library gives no &quot;Track Type&quot; for it, so that it is not known whether it is a file</comment>
        <translation>
            <numerusform>%Ln Titel wird nicht durchsucht: Die Mediathek gibt keinen „Track Type“ an, sodass nicht bekannt ist, ob er eine Datei ist</numerusform>
            <numerusform>%Ln Titel werden nicht durchsucht: Die Mediathek gibt keinen „Track Type“ an, sodass nicht bekannt ist, ob sie Dateien sind</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln songs are not searched: the library&apos;s list of all songs is without them</source>
        <comment>%Ln song is not searched: the library&apos;s list of all songs is without it</comment>
        <translation>
            <numerusform>%Ln Titel wird nicht durchsucht: Er fehlt in der Liste aller Titel der Mediathek</numerusform>
            <numerusform>%Ln Titel werden nicht durchsucht: Sie fehlen in der Liste aller Titel der Mediathek</numerusform>
        </translation>
    </message>
    <message>
        <source>live</source>
        <translation>live</translation>
    </message>
    <message>
        <source>a remix</source>
        <translation>ein Remix</translation>
    </message>
    <message>
        <source>remastered</source>
        <translation>neu gemastert</translation>
    </message>
    <message>
        <source>acoustic</source>
        <translation>akustisch</translation>
    </message>
    <message>
        <source>instrumental</source>
        <translation>instrumental</translation>
    </message>
    <message>
        <source>karaoke</source>
        <translation>Karaoke</translation>
    </message>
    <message>
        <source>a demo</source>
        <translation>eine Demoaufnahme</translation>
    </message>
    <message>
        <source>a radio edit</source>
        <translation>eine Radiofassung</translation>
    </message>
    <message>
        <source>extended</source>
        <translation>eine lange Fassung</translation>
    </message>
    <message>
        <source>explicit</source>
        <translation>explizit</translation>
    </message>
    <message>
        <source>clean</source>
        <translation>zensiert</translation>
    </message>
    <message>
        <source>mono</source>
        <translation>mono</translation>
    </message>
    <message>
        <source>not all are %1</source>
        <translation>nicht alle sind %1</translation>
    </message>
    <message numerus="yes">
        <source>different albums, and %Ln seconds apart</source>
        <comment>different albums, and %Ln second apart</comment>
        <translation>
            <numerusform>verschiedene Alben und %Ln Sekunde Unterschied</numerusform>
            <numerusform>verschiedene Alben und %Ln Sekunden Unterschied</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>playing times are %Ln seconds apart</source>
        <comment>playing times are %Ln second apart</comment>
        <translation>
            <numerusform>die Spielzeiten liegen %Ln Sekunde auseinander</numerusform>
            <numerusform>die Spielzeiten liegen %Ln Sekunden auseinander</numerusform>
        </translation>
    </message>
    <message>
        <source>Accents</source>
        <translation>Akzente</translation>
    </message>
    <message>
        <source>Punctuation and spaces</source>
        <translation>Satzzeichen und Leerzeichen</translation>
    </message>
    <message>
        <source>What is in brackets</source>
        <translation>Was in Klammern steht</translation>
    </message>
    <message>
        <source>Guests after &quot;feat.&quot;</source>
        <translation>Gäste nach „feat.“</translation>
    </message>
    <message>
        <source>Articles at the beginning</source>
        <translation>Artikel am Anfang</translation>
    </message>
    <message>
        <source>&amp; for &quot;and&quot;</source>
        <translation>&amp; für „and“</translation>
    </message>
    <message>
        <source>Full and half width forms</source>
        <translation>Volle und halbe Breite</translation>
    </message>
    <message>
        <source>the earlier date added</source>
        <translation>das frühere Hinzufügedatum</translation>
    </message>
    <message>
        <source>the later date played</source>
        <translation>das spätere Wiedergabedatum</translation>
    </message>
    <message>
        <source>%1 BPM</source>
        <translation>%1 BPM</translation>
    </message>
    <message>
        <source>lossless sound</source>
        <translation>verlustfreier Ton</translation>
    </message>
    <message numerus="yes">
        <source>%Ln ratings</source>
        <comment>%Ln rating</comment>
        <translation>
            <numerusform>%Ln Bewertung</numerusform>
            <numerusform>%Ln Bewertungen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln earlier dates added</source>
        <comment>%Ln earlier date added</comment>
        <translation>
            <numerusform>%Ln früheres Hinzufügedatum</numerusform>
            <numerusform>%Ln frühere Hinzufügedaten</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln later dates played</source>
        <comment>%Ln later date played</comment>
        <translation>
            <numerusform>%Ln späteres Wiedergabedatum</numerusform>
            <numerusform>%Ln spätere Wiedergabedaten</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln comments</source>
        <comment>%Ln comment</comment>
        <translation>
            <numerusform>%Ln Kommentar</numerusform>
            <numerusform>%Ln Kommentare</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln groupings</source>
        <comment>%Ln grouping</comment>
        <translation>
            <numerusform>%Ln Gruppierung</numerusform>
            <numerusform>%Ln Gruppierungen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln BPM values</source>
        <comment>%Ln BPM value</comment>
        <translation>
            <numerusform>%Ln BPM-Wert</numerusform>
            <numerusform>%Ln BPM-Werte</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln lossless files</source>
        <comment>%Ln lossless file</comment>
        <translation>
            <numerusform>%Ln verlustfreie Datei</numerusform>
            <numerusform>%Ln verlustfreie Dateien</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln places in playlists</source>
        <comment>%Ln place in playlists</comment>
        <translation>
            <numerusform>%Ln Platz in Wiedergabelisten</numerusform>
            <numerusform>%Ln Plätze in Wiedergabelisten</numerusform>
        </translation>
    </message>
    <message>
        <source>the fields differ and are equal only joined together: %1</source>
        <translation>die Felder sind verschieden und nur aneinandergehängt gleich: %1</translation>
    </message>
    <message>
        <source>times count from %1, of %2</source>
        <translation>Zeiten zählen von %1 an, von %2</translation>
    </message>
    <message>
        <source>would be split by: %1</source>
        <translation>würde getrennt durch: %1</translation>
    </message>
    <message>
        <source>Kept</source>
        <translation>Behalten</translation>
    </message>
    <message>
        <source>Because</source>
        <translation>Weil</translation>
    </message>
    <message>
        <source>Kept: %1</source>
        <translation>Behalten: %1</translation>
    </message>
    <message>
        <source>Nothing is kept yet</source>
        <translation>Noch wird nichts behalten</translation>
    </message>
    <message numerus="yes">
        <source>✓ %Ln entries changed</source>
        <comment>✓ %Ln entry changed</comment>
        <translation>
            <numerusform>✓ %Ln Eintrag geändert</numerusform>
            <numerusform>✓ %Ln Einträge geändert</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>✓ %Ln entries deleted</source>
        <comment>✓ %Ln entry deleted</comment>
        <translation>
            <numerusform>✓ %Ln Eintrag gelöscht</numerusform>
            <numerusform>✓ %Ln Einträge gelöscht</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;Delete Repeats</source>
        <translation>Wiederholungen &amp;löschen</translation>
    </message>
    <message numerus="yes">
        <source>&amp;Delete %Ln Repeats</source>
        <comment>&amp;Delete %Ln Repeat</comment>
        <translation>
            <numerusform>%Ln Wiederholung &amp;löschen</numerusform>
            <numerusform>%Ln Wiederholungen &amp;löschen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1: %Ln of %2 entries deleted</source>
        <comment>%1: %Ln of %2 entries deleted</comment>
        <translation>
            <numerusform>%1: %Ln von %2 Einträgen gelöscht</numerusform>
            <numerusform>%1: %Ln von %2 Einträgen gelöscht</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>E&amp;xport %Ln Groups…</source>
        <comment>E&amp;xport %Ln Group…</comment>
        <translation>
            <numerusform>%Ln Gruppe e&amp;xportieren…</numerusform>
            <numerusform>%Ln Gruppen e&amp;xportieren…</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln undecided</source>
        <comment>%Ln undecided</comment>
        <translation>
            <numerusform>%Ln unentschieden</numerusform>
            <numerusform>%Ln unentschieden</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln entries in %1</source>
        <comment>%Ln entry in %1</comment>
        <translation>
            <numerusform>%Ln Eintrag in %1</numerusform>
            <numerusform>%Ln Einträge in %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln copies</source>
        <comment>%Ln copy</comment>
        <translation>
            <numerusform>%Ln Kopie</numerusform>
            <numerusform>%Ln Kopien</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln groups</source>
        <comment>%Ln group</comment>
        <translation>
            <numerusform>%Ln Gruppe</numerusform>
            <numerusform>%Ln Gruppen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>With this field too: %Ln groups</source>
        <comment>With this field too: %Ln group</comment>
        <translation>
            <numerusform>Mit diesem Feld dazu: %Ln Gruppe</numerusform>
            <numerusform>Mit diesem Feld dazu: %Ln Gruppen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>&amp;Remove %Ln Copies</source>
        <comment>&amp;Remove %Ln Copy</comment>
        <translation>
            <numerusform>%Ln Kopie &amp;entfernen</numerusform>
            <numerusform>%Ln Kopien &amp;entfernen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Remove %Ln copies from the library?</source>
        <comment>Remove %Ln copy from the library?</comment>
        <translation>
            <numerusform>%Ln Kopie aus der Bibliothek entfernen?</numerusform>
            <numerusform>%Ln Kopien aus der Bibliothek entfernen?</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>&amp;Move %Ln Files to the Trash</source>
        <comment>&amp;Move %Ln File to the Trash</comment>
        <translation>
            <numerusform>%Ln Datei in den Papierkorb &amp;verschieben</numerusform>
            <numerusform>%Ln Dateien in den Papierkorb &amp;verschieben</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Move %Ln files to the trash?</source>
        <comment>Move %Ln file to the trash?</comment>
        <translation>
            <numerusform>%Ln Datei in den Papierkorb verschieben?</numerusform>
            <numerusform>%Ln Dateien in den Papierkorb verschieben?</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln files, %1</source>
        <comment>%Ln file, %1</comment>
        <translation>
            <numerusform>%Ln Datei, %1</numerusform>
            <numerusform>%Ln Dateien, %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln stay</source>
        <comment>%Ln stays</comment>
        <translation>
            <numerusform>%Ln bleibt</numerusform>
            <numerusform>%Ln bleiben</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln entries in %1 get the kept copies, or go where one is listed already.</source>
        <comment>%Ln entry in %1 gets the kept copy, or goes where it is listed already.</comment>
        <translation>
            <numerusform>%Ln Eintrag in %1 bekommt die behaltene Kopie oder entfällt, wo sie schon steht.</numerusform>
            <numerusform>%Ln Einträge in %1 bekommen die behaltenen Kopien oder entfallen, wo eine schon steht.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln entries in %1 get the kept copies.</source>
        <comment>%Ln entry in %1 gets the kept copy.</comment>
        <translation>
            <numerusform>%Ln Eintrag in %1 bekommt die behaltene Kopie.</numerusform>
            <numerusform>%Ln Einträge in %1 bekommen die behaltenen Kopien.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln entries in %1 still point at these files.</source>
        <comment>%Ln entry in %1 still points at these files.</comment>
        <translation>
            <numerusform>%Ln Eintrag in %1 zeigt noch auf diese Dateien.</numerusform>
            <numerusform>%Ln Einträge in %1 zeigen noch auf diese Dateien.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln playlists list one already.</source>
        <comment>%Ln playlist lists one already.</comment>
        <translation>
            <numerusform>%Ln Wiedergabeliste enthält eine schon.</numerusform>
            <numerusform>%Ln Wiedergabelisten enthalten eine schon.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln playlists (⚠) list a kept copy already.</source>
        <comment>%Ln playlist (⚠) lists a kept copy already.</comment>
        <translation>
            <numerusform>%Ln Wiedergabeliste (⚠) enthält eine behaltene Kopie schon.</numerusform>
            <numerusform>%Ln Wiedergabelisten (⚠) enthalten eine behaltene Kopie schon.</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;Replace Entries</source>
        <translation>Einträge e&amp;rsetzen</translation>
    </message>
    <message numerus="yes">
        <source>&amp;Replace %Ln Entries</source>
        <comment>&amp;Replace %Ln Entry</comment>
        <translation>
            <numerusform>%Ln Eintrag e&amp;rsetzen</numerusform>
            <numerusform>%Ln Einträge e&amp;rsetzen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1: %Ln of %2 entries replaced</source>
        <comment>%1: %Ln of %2 entries replaced</comment>
        <translation>
            <numerusform>%1: %Ln von %2 Einträgen ersetzt</numerusform>
            <numerusform>%1: %Ln von %2 Einträgen ersetzt</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>It lists %Ln kept copies already</source>
        <comment>It lists %Ln kept copy already</comment>
        <translation>
            <numerusform>Sie enthält %Ln behaltene Kopie schon</numerusform>
            <numerusform>Sie enthält %Ln behaltene Kopien schon</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 of %Ln playlists chosen</source>
        <comment>%1 of %Ln playlist chosen</comment>
        <translation>
            <numerusform>%1 von %Ln Wiedergabeliste gewählt</numerusform>
            <numerusform>%1 von %Ln Wiedergabelisten gewählt</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>&amp;All %Ln groups</source>
        <comment>&amp;All %Ln group</comment>
        <translation>
            <numerusform>&amp;Alle (%Ln Gruppe)</numerusform>
            <numerusform>&amp;Alle %Ln Gruppen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln entries become as they were before.</source>
        <comment>%Ln entry becomes as it was before.</comment>
        <translation>
            <numerusform>%Ln Eintrag wird, wie er vorher war.</numerusform>
            <numerusform>%Ln Einträge werden, wie sie vorher waren.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln playlists become as they were before.</source>
        <comment>%Ln playlist becomes as it was before.</comment>
        <translation>
            <numerusform>%Ln Wiedergabeliste wird, wie sie vorher war.</numerusform>
            <numerusform>%Ln Wiedergabelisten werden, wie sie vorher waren.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln tracks come back into the library.</source>
        <comment>%Ln track comes back into the library.</comment>
        <translation>
            <numerusform>%Ln Titel kommt in die Bibliothek zurück.</numerusform>
            <numerusform>%Ln Titel kommen in die Bibliothek zurück.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln tracks leave the library; their files stay.</source>
        <comment>%Ln track leaves the library; its file stays.</comment>
        <translation>
            <numerusform>%Ln Titel verlässt die Bibliothek; die Datei bleibt.</numerusform>
            <numerusform>%Ln Titel verlassen die Bibliothek; die Dateien bleiben.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln files come back from the trash.</source>
        <comment>%Ln file comes back from the trash.</comment>
        <translation>
            <numerusform>%Ln Datei kommt aus dem Papierkorb zurück.</numerusform>
            <numerusform>%Ln Dateien kommen aus dem Papierkorb zurück.</numerusform>
        </translation>
    </message>
    <message>
        <source>its playlists cannot be changed</source>
        <translation>ihre Wiedergabelisten lassen sich nicht ändern</translation>
    </message>
    <message>
        <source>reading it takes longer</source>
        <translation>sie zu lesen dauert länger</translation>
    </message>
    <message>
        <source>In %1</source>
        <translation>In %1</translation>
    </message>
    <message>
        <source>It cannot be changed now: %1</source>
        <translation>Sie lässt sich jetzt nicht ändern: %1</translation>
    </message>
    <message>
        <source>cannot be changed now</source>
        <translation>lässt sich jetzt nicht ändern</translation>
    </message>
    <message numerus="yes">
        <source>%Ln notes on this library</source>
        <comment>%Ln note on this library</comment>
        <translation>
            <numerusform>%Ln Hinweis zu dieser Bibliothek</numerusform>
            <numerusform>%Ln Hinweise zu dieser Bibliothek</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>listed %Ln times</source>
        <comment>listed %Ln time</comment>
        <translation>
            <numerusform>%Ln-mal enthalten</numerusform>
            <numerusform>%Ln-mal enthalten</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln repeats</source>
        <comment>%Ln repeat</comment>
        <translation>
            <numerusform>%Ln Wiederholung</numerusform>
            <numerusform>%Ln Wiederholungen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>and %Ln more copies</source>
        <comment>and %Ln more copy</comment>
        <translation>
            <numerusform>und %Ln weitere Kopie</numerusform>
            <numerusform>und %Ln weitere Kopien</numerusform>
        </translation>
    </message>
    <message>
        <source>Your picks could not be read.</source>
        <translation>Ihre Entscheidungen konnten nicht gelesen werden.</translation>
    </message>
    <message>
        <source>Your picks cannot be kept for later.</source>
        <translation>Ihre Entscheidungen können nicht aufbewahrt werden.</translation>
    </message>
    <message>
        <source>two groups in which you chose have become one: choose again</source>
        <translation>aus zwei Gruppen, in denen Sie gewählt hatten, ist eine geworden: Wählen Sie neu</translation>
    </message>
    <message numerus="yes">
        <source>%Ln kept</source>
        <comment>%Ln kept</comment>
        <translation>
            <numerusform>%Ln behalten</numerusform>
            <numerusform>%Ln behalten</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln files missing</source>
        <comment>%Ln file missing</comment>
        <translation>
            <numerusform>%Ln Datei fehlt</numerusform>
            <numerusform>%Ln Dateien fehlen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln groups are no duplicates from now on. Edit, Undo takes that back.</source>
        <comment>%Ln group is no duplicate from now on. Edit, Undo takes that back.</comment>
        <translation>
            <numerusform>%Ln Gruppe ist von nun an kein Duplikat. Bearbeiten, Rückgängig nimmt das zurück.</numerusform>
            <numerusform>%Ln Gruppen sind von nun an keine Duplikate. Bearbeiten, Rückgängig nimmt das zurück.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln picks of yours kept</source>
        <comment>%Ln pick of yours kept</comment>
        <translation>
            <numerusform>%Ln Entscheidung von Ihnen gilt</numerusform>
            <numerusform>%Ln Entscheidungen von Ihnen gelten</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln groups left out as no duplicates</source>
        <comment>%Ln group left out as no duplicates</comment>
        <translation>
            <numerusform>%Ln Gruppe weggelassen: keine Duplikate</numerusform>
            <numerusform>%Ln Gruppen weggelassen: keine Duplikate</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>leaving out %Ln groups</source>
        <comment>leaving out %Ln group</comment>
        <translation>
            <numerusform>Weglassen von %Ln Gruppe</numerusform>
            <numerusform>Weglassen von %Ln Gruppen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>the choice in %Ln groups</source>
        <comment>the choice in %Ln group</comment>
        <translation>
            <numerusform>Wahl in %Ln Gruppe</numerusform>
            <numerusform>Wahl in %Ln Gruppen</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 The music application has kept a part of it; the history has the old entries</source>
        <translation>%1 Das Musikprogramm hat einen Teil davon behalten; der Verlauf hat die alten Einträge</translation>
    </message>
    <message numerus="yes">
        <source>%Ln groups are left out, each because %1.</source>
        <comment>%Ln group is left out, because %1.</comment>
        <translation>
            <numerusform>%Ln Gruppe wird ausgelassen, weil %1.</numerusform>
            <numerusform>%Ln Gruppen werden ausgelassen, jeweils weil %1.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln files stay, each because %1: %2.</source>
        <comment>%Ln file stays, because %1: %2.</comment>
        <translation>
            <numerusform>%Ln Datei bleibt (%1): %2.</numerusform>
            <numerusform>%Ln Dateien bleiben (%1): %2.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln tracks stay, each because %1: %2.</source>
        <comment>%Ln track stays, because %1: %2.</comment>
        <translation>
            <numerusform>%Ln Titel bleibt (%1): %2.</numerusform>
            <numerusform>%Ln Titel bleiben (%1): %2.</numerusform>
        </translation>
    </message>
    <message>
        <source>lets its playlists be read only, with this password or none</source>
        <translation>lässt seine Wiedergabelisten nur lesen, mit diesem Passwort oder ohne</translation>
    </message>
    <message>
        <source>the list may be longer than the server allows: raise max_playlist_length in its settings</source>
        <translation>die Liste ist vielleicht länger, als der Server erlaubt: Erhöhen Sie max_playlist_length in seinen Einstellungen</translation>
    </message>
    <message>
        <source>it cannot be read, so that what it lists is not known</source>
        <translation>sie kann nicht gelesen werden, sodass nicht bekannt ist, was in ihr steht</translation>
    </message>
    <message>
        <source>the folder of the music is not known: write ?music=/FOLDER behind the address</source>
        <translation>der Ordner der Musik ist nicht bekannt: Schreiben Sie ?music=/ORDNER hinter die Adresse</translation>
    </message>
    <message>
        <source>left without a keeper by hand</source>
        <translation>von Hand ohne behaltene Kopie gelassen</translation>
    </message>
    <message>
        <source>Whole library</source>
        <translation>Ganze Bibliothek</translation>
    </message>
    <message>
        <source>%1 kbit/s</source>
        <translation>%1 kbit/s</translation>
    </message>
    <message>
        <source>you keep no copy, so nothing is done about this group</source>
        <translation>Sie behalten keine Kopie, also geschieht mit dieser Gruppe nichts</translation>
    </message>
    <message numerus="yes">
        <source>%Ln doubtful</source>
        <comment>%Ln doubtful</comment>
        <translation>
            <numerusform>%Ln zweifelhaft</numerusform>
            <numerusform>%Ln zweifelhaft</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln picks of yours</source>
        <comment>%Ln pick of yours</comment>
        <translation>
            <numerusform>%Ln Wahl von Ihnen</numerusform>
            <numerusform>%Ln Wahlen von Ihnen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 of %Ln rules agree</source>
        <comment>%1 of %Ln rule agrees</comment>
        <translation>
            <numerusform>%1 von %Ln Regel stimmt zu</numerusform>
            <numerusform>%1 von %Ln Regeln stimmen zu</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln copies that are not kept</source>
        <comment>%Ln copy that is not kept</comment>
        <translation>
            <numerusform>%Ln Kopie, die nicht behalten wird</numerusform>
            <numerusform>%Ln Kopien, die nicht behalten werden</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln groups without keeper</source>
        <comment>%Ln group without keeper</comment>
        <translation>
            <numerusform>%Ln Gruppe ohne behaltenen Titel</numerusform>
            <numerusform>%Ln Gruppen ohne behaltenen Titel</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln groups with several kept</source>
        <comment>%Ln group with several kept</comment>
        <translation>
            <numerusform>%Ln Gruppe mit mehreren behaltenen</numerusform>
            <numerusform>%Ln Gruppen mit mehreren behaltenen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln fewer</source>
        <comment>%Ln fewer</comment>
        <translation>
            <numerusform>%Ln weniger</numerusform>
            <numerusform>%Ln weniger</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln more</source>
        <comment>%Ln more</comment>
        <translation>
            <numerusform>%Ln mehr</numerusform>
            <numerusform>%Ln mehr</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln groups in which you keep no copy</source>
        <comment>%Ln group in which you keep no copy</comment>
        <translation>
            <numerusform>%Ln Gruppe, in der Sie keine Kopie behalten</numerusform>
            <numerusform>%Ln Gruppen, in denen Sie keine Kopie behalten</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln groups in which your picks differ</source>
        <comment>%Ln group in which your picks differ</comment>
        <translation>
            <numerusform>%Ln Gruppe, in der sich Ihre Wahlen widersprechen</numerusform>
            <numerusform>%Ln Gruppen, in denen sich Ihre Wahlen widersprechen</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 over %2 kbit/s</source>
        <translation>%1 statt %2 kbit/s</translation>
    </message>
    <message>
        <source>lossless with %1</source>
        <translation>verlustfrei mit %1</translation>
    </message>
    <message>
        <source>lossy with %1</source>
        <translation>verlustbehaftet mit %1</translation>
    </message>
    <message numerus="yes">
        <source>%Ln bits</source>
        <comment>%Ln bit</comment>
        <translation>
            <numerusform>%Ln Bit</numerusform>
            <numerusform>%Ln Bit</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 Hz</source>
        <translation>%1 Hz</translation>
    </message>
    <message numerus="yes">
        <source>%Ln channels</source>
        <comment>%Ln channel</comment>
        <translation>
            <numerusform>%Ln Kanal</numerusform>
            <numerusform>%Ln Kanälen</numerusform>
        </translation>
    </message>
    <message>
        <source>lossless</source>
        <translation>verlustfrei</translation>
    </message>
    <message>
        <source>lossy</source>
        <translation>verlustbehaftet</translation>
    </message>
    <message>
        <source>expected a track</source>
        <translation>hier wird ein Titel erwartet</translation>
    </message>
    <message>
        <source>a folder of audio files has only the files themselves to write them into, and they are left as they are</source>
        <translation>ein Ordner mit Audiodateien hat nur die Dateien selbst, in die sie geschrieben werden könnten, und die bleiben, wie sie sind</translation>
    </message>
    <message>
        <source>the music player notes plays and ratings of its songs, and no more</source>
        <translation>das Musikprogramm merkt sich Wiedergaben und Bewertungen seiner Titel und nichts weiter</translation>
    </message>
    <message>
        <source>the music player notes nothing of its songs: its settings name no sticker_file</source>
        <translation>das Musikprogramm merkt sich nichts zu seinen Titeln: seine Einstellungen nennen keine sticker_file</translation>
    </message>
    <message>
        <source>Rhythmbox, while it runs, would write comments into the audio file itself: close it first</source>
        <translation>Rhythmbox würde Kommentare, solange es läuft, in die Audiodatei selbst schreiben: zuerst schließen</translation>
    </message>
    <message>
        <source>Rhythmbox does not take what it is given: %1</source>
        <translation>Rhythmbox nimmt nicht an, was es bekommt: %1</translation>
    </message>
    <message>
        <source>the scripts by which it is reached have no words for it</source>
        <translation>die Skripte, über die es erreicht wird, haben keine Worte dafür</translation>
    </message>
    <message>
        <source>Strawberry does not keep when a song was added</source>
        <translation>Strawberry merkt sich nicht, wann ein Titel hinzugefügt wurde</translation>
    </message>
    <message>
        <source>the history cannot be read: the values of a track are damaged</source>
        <translation>der Verlauf ist nicht lesbar: die Werte eines Titels sind beschädigt</translation>
    </message>
    <message>
        <source>the tracks stay in the library when only their files go; remove them instead</source>
        <translation>die Titel bleiben in der Mediathek, wenn nur ihre Dateien gehen; stattdessen entfernen</translation>
    </message>
    <message>
        <source>cannot take over what copies have: %1</source>
        <translation>kann nicht übernehmen, was Kopien haben: %1</translation>
    </message>
    <message>
        <source>Leave that out.</source>
        <translation>Lassen Sie das weg.</translation>
    </message>
    <message>
        <source>later dates played</source>
        <translation>spätere Wiedergabedaten</translation>
    </message>
    <message>
        <source>its plays, rating, date added or comments, or those of the copy that is kept, were changed since the plan was made</source>
        <translation>seine Wiedergaben, Bewertung, sein Hinzufügedatum oder Kommentar, oder die der behaltenen Kopie, haben sich seit dem Plan geändert</translation>
    </message>
    <message>
        <source>the kept tracks did not take over what their copies had</source>
        <translation>die behaltenen Titel haben nicht übernommen, was ihre Kopien hatten</translation>
    </message>
    <message>
        <source>no copy of it left the library</source>
        <translation>keine Kopie davon hat die Mediathek verlassen</translation>
    </message>
    <message>
        <source>what the copies had was not carried over: %1. Undoing the run brings them back</source>
        <translation>was die Kopien hatten, wurde nicht übernommen: %1. Rückgängig machen bringt sie zurück</translation>
    </message>
    <message numerus="yes">
        <source>%Ln kept tracks took over what their copies had.</source>
        <comment>%Ln kept track took over what its copies had.</comment>
        <translation>
            <numerusform>%Ln behaltener Titel hat übernommen, was seine Kopien hatten.</numerusform>
            <numerusform>%Ln behaltene Titel haben übernommen, was ihre Kopien hatten.</numerusform>
        </translation>
    </message>
    <message>
        <source>not all of the files came back</source>
        <translation>nicht alle Dateien sind zurückgekommen</translation>
    </message>
    <message>
        <source>it is not in the library</source>
        <translation>es ist nicht in der Mediathek</translation>
    </message>
    <message>
        <source>its plays, rating, date added or comments were changed since</source>
        <translation>seine Wiedergaben, Bewertung, sein Hinzufügedatum oder Kommentar haben sich seither geändert</translation>
    </message>
    <message>
        <source>it fills itself</source>
        <translation>sie füllt sich selbst</translation>
    </message>
    <message numerus="yes">
        <source>%Ln automatic playlists are not changed: %1.</source>
        <comment>%Ln automatic playlist is not changed: %1.</comment>
        <translation>
            <numerusform>%Ln automatische Wiedergabeliste wird nicht geändert: %1.</numerusform>
            <numerusform>%Ln automatische Wiedergabelisten werden nicht geändert: %1.</numerusform>
        </translation>
    </message>
    <message>
        <source>it, or what is kept in its place, was changed since the library was read</source>
        <translation>sie oder das, was an ihrer Stelle bleibt, wurde geändert, seit die Bibliothek gelesen wurde</translation>
    </message>
    <message>
        <source>That values are empty</source>
        <translation>Dass Werte leer sind</translation>
    </message>
    <message>
        <source>cover</source>
        <translation>Cover</translation>
    </message>
    <message numerus="yes">
        <source>%Ln covers</source>
        <comment>%Ln cover</comment>
        <translation>
            <numerusform>%Ln Cover</numerusform>
            <numerusform>%Ln Cover</numerusform>
        </translation>
    </message>
    <message>
        <source>same audio</source>
        <translation>gleiche Tondaten</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>it is silent, or one steady sound</source>
        <translation>sie ist still oder ein einziger gleichbleibender Ton</translation>
    </message>
    <message>
        <source>it is damaged: its audio is not what its own checksum says</source>
        <translation>sie ist beschädigt: Ihr Ton stimmt nicht mit ihrer eigenen Prüfsumme überein</translation>
    </message>
    <message>
        <source>sounds different: only %1 % alike</source>
        <translation>klingt anders: nur zu %1 % gleich</translation>
    </message>
    <message>
        <source>sounds the same where it can be read, but a file is damaged</source>
        <translation>klingt gleich, soweit sich das lesen lässt, aber eine Datei ist beschädigt</translation>
    </message>
    <message numerus="yes">
        <source>sounds the same at first, but the files are %Ln seconds apart</source>
        <comment>sounds the same at first, but the files are %Ln second apart</comment>
        <translation>
            <numerusform>klingt am Anfang gleich, aber die Dateien liegen %Ln Sekunde auseinander</numerusform>
            <numerusform>klingt am Anfang gleich, aber die Dateien liegen %Ln Sekunden auseinander</numerusform>
        </translation>
    </message>
    <message>
        <source>it sounds different from what is kept: only %1 % alike</source>
        <translation>sie klingt anders als die behaltene: nur zu %1 % gleich</translation>
    </message>
    <message>
        <source>it is not known whether it sounds the same</source>
        <translation>es ist nicht bekannt, ob sie gleich klingt</translation>
    </message>
    <message>
        <source>Sound</source>
        <translation>Klang</translation>
    </message>
    <message>
        <source>its file %1</source>
        <translation>ihre Datei %1</translation>
    </message>
    <message>
        <source>its folder is closed to changes</source>
        <translation>ihr Ordner lässt keine Änderungen zu</translation>
    </message>
    <message>
        <source>the playlist %1 is as long as servers allow unless they are set otherwise (max_playlist_length): it may not be possible to change it</source>
        <translation>die Playlist %1 ist so lang, wie Server es ohne andere Einstellung erlauben (max_playlist_length): vielleicht lässt sie sich nicht ändern</translation>
    </message>
    <message>
        <source>Rhythmbox runs for the first time, and has not written its library</source>
        <translation>Rhythmbox läuft zum ersten Mal und hat seine Mediathek noch nicht geschrieben</translation>
    </message>
    <message>
        <source>Close it once: it writes its library then.</source>
        <translation>Schließen Sie es einmal: Dann schreibt es seine Mediathek.</translation>
    </message>
    <message>
        <source>Replaced %1 and deleted %2 in %3.</source>
        <translation>%1 ersetzt und %2 gelöscht in %3.</translation>
    </message>
    <message numerus="yes">
        <source>What each rule would do with these %Ln groups, against what is kept now. A group about which a rule says nothing stays as it is.</source>
        <comment>What each rule would do with this group, against what is kept now. Where a rule says nothing it stays as it is.</comment>
        <translation>
            <numerusform>Was jede Regel mit dieser Gruppe täte, verglichen mit dem, was jetzt behalten wird. Sagt eine Regel nichts, bleibt sie, wie sie ist.</numerusform>
            <numerusform>Was jede Regel mit diesen %Ln Gruppen täte, verglichen mit dem, was jetzt behalten wird. Wo eine Regel nichts sagt, bleibt eine Gruppe, wie sie ist.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln groups stay as you picked them, whatever the rule.</source>
        <comment>%Ln group stays as you picked it, whatever the rule.</comment>
        <translation>
            <numerusform>%Ln Gruppe bleibt bei jeder Regel so, wie Sie gewählt haben.</numerusform>
            <numerusform>%Ln Gruppen bleiben bei jeder Regel so, wie Sie gewählt haben.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>&amp;Move %Ln Files, Repair %1</source>
        <comment>&amp;Move %Ln File, Repair %1</comment>
        <translation>
            <numerusform>%Ln Datei &amp;verschieben, %1 reparieren</numerusform>
            <numerusform>%Ln Dateien &amp;verschieben, %1 reparieren</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln Entries</source>
        <comment>%Ln Entry</comment>
        <translation>
            <numerusform>%Ln Eintrag</numerusform>
            <numerusform>%Ln Einträge</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 is made by the music application and loses %Ln entries.</source>
        <comment>%1 is made by the music application and loses %Ln entry.</comment>
        <translation>
            <numerusform>%1 erstellt das Musikprogramm; sie verliert %Ln Eintrag.</numerusform>
            <numerusform>%1 erstellt das Musikprogramm; sie verliert %Ln Einträge.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>&amp;Replace %1 and Delete %Ln Entries</source>
        <comment>&amp;Replace %1 and Delete %Ln Entry</comment>
        <translation>
            <numerusform>%1 e&amp;rsetzen und %Ln Eintrag löschen</numerusform>
            <numerusform>%1 e&amp;rsetzen und %Ln Einträge löschen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1, %Ln deleted</source>
        <comment>%1, %Ln deleted</comment>
        <translation>
            <numerusform>%1, %Ln gelöscht</numerusform>
            <numerusform>%1, %Ln gelöscht</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 of another library here, %2, lists %Ln of these files.</source>
        <comment>%1 of another library here, %2, lists %Ln of these files.</comment>
        <translation>
            <numerusform>%1 einer anderen Bibliothek hier, %2, enthält %Ln dieser Dateien.</numerusform>
            <numerusform>%1 einer anderen Bibliothek hier, %2, enthält %Ln dieser Dateien.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>So do %Ln more playlists of other libraries.</source>
        <comment>So does %Ln more playlist of other libraries.</comment>
        <translation>
            <numerusform>Ebenso %Ln weitere Wiedergabeliste anderer Bibliotheken.</numerusform>
            <numerusform>Ebenso %Ln weitere Wiedergabelisten anderer Bibliotheken.</numerusform>
        </translation>
    </message>
    <message>
        <source>passed over: %1</source>
        <translation>übergangen: %1</translation>
    </message>
    <message>
        <source>Rules That Agree</source>
        <translation>Einige Regeln</translation>
    </message>
    <message>
        <source>Reading files for the rule: %1 of %2</source>
        <translation>Dateien für die Regel werden gelesen: %1 von %2</translation>
    </message>
    <message>
        <source>Listening to files: %1 of %2</source>
        <translation>Dateien werden angehört: %1 von %2</translation>
    </message>
    <message>
        <source>The sound could not be compared.</source>
        <translation>Der Klang konnte nicht verglichen werden.</translation>
    </message>
    <message numerus="yes">
        <source>&amp;Show %Ln Groups Again</source>
        <comment>&amp;Show %Ln Group Again</comment>
        <translation>
            <numerusform>%Ln Gruppe &amp;wieder zeigen</numerusform>
            <numerusform>%Ln Gruppen &amp;wieder zeigen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln copies do not sound like the one that is kept.</source>
        <comment>%Ln copy does not sound like the one that is kept.</comment>
        <translation>
            <numerusform>%Ln Kopie klingt nicht wie die behaltene.</numerusform>
            <numerusform>%Ln Kopien klingen nicht wie die behaltene.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Looser by this: %Ln groups</source>
        <comment>Looser by this: %Ln group</comment>
        <translation>
            <numerusform>So gelockert: %Ln Gruppe</numerusform>
            <numerusform>So gelockert: %Ln Gruppen</numerusform>
        </translation>
    </message>
    <message>
        <source>compilation</source>
        <translation>Kompilation</translation>
    </message>
    <message>
        <source>Changing ticks…</source>
        <translation>Häkchen werden geändert…</translation>
    </message>
    <message>
        <source>The ticks could not be changed.</source>
        <translation>Die Häkchen konnten nicht geändert werden.</translation>
    </message>
    <message numerus="yes">
        <source>%1 of %Ln changes were undone.</source>
        <comment>%1 of %Ln change was undone.</comment>
        <translation>
            <numerusform>%1 von %Ln Änderung wurde rückgängig gemacht.</numerusform>
            <numerusform>%1 von %Ln Änderungen wurden rückgängig gemacht.</numerusform>
        </translation>
    </message>
    <message>
        <source>asks for a password</source>
        <translation>verlangt ein Passwort</translation>
    </message>
    <message numerus="yes">
        <source>%Ln playlists fill themselves and are shown without entries: Rhythmbox does not tell what they hold</source>
        <comment>%Ln playlist fills itself and is shown without entries: Rhythmbox does not tell what it holds</comment>
        <translation>
            <numerusform>%Ln Wiedergabeliste füllt sich selbst und wird ohne Einträge gezeigt: Rhythmbox sagt nicht, was sie enthält</numerusform>
            <numerusform>%Ln Wiedergabelisten füllen sich selbst und werden ohne Einträge gezeigt: Rhythmbox sagt nicht, was sie enthalten</numerusform>
        </translation>
    </message>
    <message>
        <source>%1.%2 has no meaning</source>
        <translation>%1.%2 hat keine Bedeutung</translation>
    </message>
    <message>
        <source>%1: there is no rule %2</source>
        <translation>%1: Die Regel %2 gibt es nicht</translation>
    </message>
    <message>
        <source>it lists a track twice, which Rhythmbox does not do</source>
        <translation>sie führt einen Titel zweimal auf, was Rhythmbox nicht tut</translation>
    </message>
    <message numerus="yes">
        <source>%Ln skips</source>
        <comment>%Ln skip</comment>
        <translation>
            <numerusform>%Ln-mal übersprungen</numerusform>
            <numerusform>%Ln-mal übersprungen</numerusform>
        </translation>
    </message>
    <message>
        <source>the later date skipped</source>
        <translation>das spätere Datum des Überspringens</translation>
    </message>
    <message numerus="yes">
        <source>%Ln later dates skipped</source>
        <comment>%Ln later date skipped</comment>
        <translation>
            <numerusform>%Ln späteres Datum des Überspringens</numerusform>
            <numerusform>%Ln spätere Daten des Überspringens</numerusform>
        </translation>
    </message>
    <message>
        <source>you left it out</source>
        <translation>Sie haben es ausgelassen</translation>
    </message>
    <message numerus="yes">
        <source>%Ln entries stay: what is kept is only in the cloud</source>
        <comment>%Ln entry stays: what is kept is only in the cloud</comment>
        <translation>
            <numerusform>%Ln Eintrag bleibt: Behaltenes ist nur in der Cloud</numerusform>
            <numerusform>%Ln Einträge bleiben: Behaltenes ist nur in der Cloud</numerusform>
        </translation>
    </message>
    <message>
        <source>Group %1</source>
        <translation>Gruppe %1</translation>
    </message>
    <message numerus="yes">
        <source>%Ln of its entries are left out</source>
        <comment>%Ln of its entries is left out</comment>
        <translation>
            <numerusform>%Ln ihrer Einträge ist ausgelassen</numerusform>
            <numerusform>%Ln ihrer Einträge sind ausgelassen</numerusform>
        </translation>
    </message>
    <message>
        <source>not compared</source>
        <translation>nicht verglichen</translation>
    </message>
    <message>
        <source>the kept copy cannot be compared: %1</source>
        <translation>die behaltene Kopie ist nicht vergleichbar: %1</translation>
    </message>
    <message>
        <source>unreadable</source>
        <translation>nicht lesbar</translation>
    </message>
    <message>
        <source>it is too short</source>
        <translation>sie ist zu kurz</translation>
    </message>
    <message>
        <source>too short</source>
        <translation>zu kurz</translation>
    </message>
    <message>
        <source>silent or steady</source>
        <translation>still oder gleichförmig</translation>
    </message>
    <message>
        <source>damaged</source>
        <translation>beschädigt</translation>
    </message>
    <message>
        <source>its file is not here</source>
        <translation>ihre Datei ist nicht hier</translation>
    </message>
    <message>
        <source>no file</source>
        <translation>keine Datei</translation>
    </message>
    <message>
        <source>it, or what is kept in its place, was changed since it was listened to</source>
        <translation>sie oder das, was an ihrer Stelle behalten wird, wurde seit dem Anhören geändert</translation>
    </message>
    <message numerus="yes">
        <source>%Ln copies: %1</source>
        <comment>%Ln copy: %1</comment>
        <translation>
            <numerusform>%Ln Kopie: %1</numerusform>
            <numerusform>%Ln Kopien: %1</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 % in part</source>
        <translation>%1 % zum Teil</translation>
    </message>
    <message numerus="yes">
        <source>sounds the same, but one lacks the first %Ln seconds</source>
        <comment>sounds the same, but one lacks the first %Ln second</comment>
        <translation>
            <numerusform>klingt gleich, aber einer fehlt die erste Sekunde</numerusform>
            <numerusform>klingt gleich, aber einer fehlen die ersten %Ln Sekunden</numerusform>
        </translation>
    </message>
    <message>
        <source>sounds the same, but for several seconds in the midst</source>
        <translation>klingt gleich, aber nicht während einiger Sekunden mittendrin</translation>
    </message>
    <message>
        <source>a name without a comma that no rule has</source>
        <translation>ein Name ohne Komma, den keine Regel hat</translation>
    </message>
    <message>
        <source>a map with &quot;from&quot; and a path from the root in &quot;to&quot;</source>
        <translation>eine Zuordnung mit „from“ und einem vollständigen Pfad in „to“</translation>
    </message>
    <message>
        <source>it may be one of those that only %1 has</source>
        <translation>sie ist vielleicht eine von denen, die nur %1 hat</translation>
    </message>
    <message>
        <source>another program changed the list while it was written: what that made of it stands</source>
        <translation>ein anderes Programm hat die Liste geändert, während sie geschrieben wurde: was es daraus gemacht hat, bleibt</translation>
    </message>
    <message>
        <source>this address does not say where the music lies whose files come back</source>
        <translation>diese Adresse sagt nicht, wo die Musik liegt, deren Dateien zurückkommen</translation>
    </message>
    <message>
        <source>Use the address %1.</source>
        <translation>Verwenden Sie die Adresse %1.</translation>
    </message>
    <message numerus="yes">
        <source>The %Ln sho&amp;wn groups</source>
        <comment>The sho&amp;wn group</comment>
        <translation>
            <numerusform>Die an&amp;gezeigte Gruppe</numerusform>
            <numerusform>Die %Ln an&amp;gezeigten Gruppen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>The %Ln selecte&amp;d groups</source>
        <comment>The selecte&amp;d group</comment>
        <translation>
            <numerusform>Die ausge&amp;wählte Gruppe</numerusform>
            <numerusform>Die %Ln ausge&amp;wählten Gruppen</numerusform>
        </translation>
    </message>
    <message>
        <source>it is not known whether it sounds the same: %1</source>
        <translation>es ist nicht bekannt, ob sie gleich klingt: %1</translation>
    </message>
    <message>
        <source>Undo run %1 first.</source>
        <translation>Machen Sie zuerst Durchlauf %1 rückgängig.</translation>
    </message>
    <message numerus="yes">
        <source>%Ln copies stay: what is kept is only in the cloud</source>
        <comment>%Ln copy stays: what is kept is only in the cloud</comment>
        <translation>
            <numerusform>%Ln Kopie bleibt: Behaltenes ist nur in der Cloud</numerusform>
            <numerusform>%Ln Kopien bleiben: Behaltenes ist nur in der Cloud</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>kestrel::AddFilesDialog</name>
    <message>
        <source>Adding files to the library…</source>
        <translation>Dateien werden zur Bibliothek hinzugefügt…</translation>
    </message>
    <message>
        <source>Add Files to Library</source>
        <translation>Dateien zur Bibliothek hinzufügen</translation>
    </message>
    <message>
        <source>The files could not be added.</source>
        <translation>Die Dateien konnten nicht hinzugefügt werden.</translation>
    </message>
</context>
<context>
    <name>kestrel::ChangeNotice</name>
    <message>
        <source>The library was changed by another program.</source>
        <translation>Die Bibliothek wurde von einem anderen Programm geändert.</translation>
    </message>
    <message>
        <source>Kestrel changes only what it has read. Read the library again, and look at the result once more.</source>
        <translation>Kestrel ändert nur, was es gelesen hat. Lesen Sie die Bibliothek neu und sehen Sie das Ergebnis noch einmal an.</translation>
    </message>
    <message>
        <source>Reload</source>
        <translation>Neu laden</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Reads the library again; ticks and picks stay (F5)</source>
        <translation>Liest die Bibliothek neu; Häkchen und eigene Wahl bleiben (F5)</translation>
    </message>
    <message>
        <source>The library was changed in %1.</source>
        <translation>Die Bibliothek wurde in %1 geändert.</translation>
    </message>
    <message>
        <source>The library changed on disk.</source>
        <translation>Die Bibliothek wurde auf der Festplatte geändert.</translation>
    </message>
</context>
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
        <source>To Be Deleted</source>
        <translation>Zu löschen</translation>
    </message>
    <message>
        <source>Playlists that list a track more than once</source>
        <translation>Wiedergabelisten, die einen Titel mehrfach aufführen</translation>
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
        <source>State of the scan</source>
        <translation>Stand der Durchsicht</translation>
    </message>
    <message>
        <source>The playlists could not be looked through.</source>
        <translation>Die Wiedergabelisten konnten nicht durchgesehen werden.</translation>
    </message>
    <message>
        <source>Select one playlist to see what is deleted from it.</source>
        <translation>Wählen Sie eine Wiedergabeliste aus, um zu sehen, was aus ihr gelöscht wird.</translation>
    </message>
    <message>
        <source>Deleting repeated entries…</source>
        <translation>Mehrfache Einträge werden gelöscht…</translation>
    </message>
    <message>
        <source>These playlists list a track more than once. The first entry of each stays, the later ones are deleted. No track leaves the library.</source>
        <translation>Diese Wiedergabelisten enthalten einen Titel mehrmals. Der erste Eintrag bleibt jeweils, die späteren werden gelöscht. Kein Titel verlässt die Bibliothek.</translation>
    </message>
    <message>
        <source>No playlist of yours lists a track more than once.</source>
        <translation>Keine Ihrer Wiedergabelisten enthält einen Titel mehrmals.</translation>
    </message>
</context>
<context>
    <name>kestrel::ComparePane</name>
    <message>
        <source>%1, the better one</source>
        <translation>%1, die bessere</translation>
    </message>
    <message>
        <source>Comparison of the copies</source>
        <translation>Vergleich der Kopien</translation>
    </message>
    <message>
        <source>Cover of copy %1</source>
        <translation>Cover von Kopie %1</translation>
    </message>
    <message>
        <source>Copy %1 is kept</source>
        <translation>Kopie %1 wird behalten</translation>
    </message>
    <message>
        <source>Keep copy %1</source>
        <translation>Kopie %1 behalten</translation>
    </message>
    <message>
        <source>Play copy %1</source>
        <translation>Kopie %1 abspielen</translation>
    </message>
    <message>
        <source>Show in Folder</source>
        <translation>Im Ordner zeigen</translation>
    </message>
    <message>
        <source>Show copy %1 in its folder</source>
        <translation>Kopie %1 im Ordner zeigen</translation>
    </message>
    <message>
        <source>Playlists that hold copy %1</source>
        <translation>Wiedergabelisten mit Kopie %1</translation>
    </message>
    <message>
        <source>Playlists</source>
        <translation>Wiedergabelisten</translation>
    </message>
    <message>
        <source>In the cloud: %1</source>
        <translation>In der Cloud: %1</translation>
    </message>
    <message>
        <source>There is no file to play.</source>
        <translation>Es gibt keine Datei zum Abspielen.</translation>
    </message>
    <message>
        <source>Plays this copy, and pauses it (P)</source>
        <translation>Spielt diese Kopie und hält sie an (P)</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keine</translation>
    </message>
    <message>
        <source>✓ Kept</source>
        <translation>✓ Bleibt</translation>
    </message>
    <message>
        <source>Keep</source>
        <translation>Behalten</translation>
    </message>
    <message>
        <source>Show</source>
        <translation>Zeigen</translation>
    </message>
</context>
<context>
    <name>kestrel::CompareRulesSheet</name>
    <message>
        <source>About this window</source>
        <translation>Über dieses Fenster</translation>
    </message>
    <message>
        <source>Compare Rules</source>
        <translation>Regeln vergleichen</translation>
    </message>
    <message>
        <source>Progress of comparing</source>
        <translation>Fortschritt des Vergleichs</translation>
    </message>
    <message>
        <source>&amp;Use This Rule</source>
        <translation>Diese Regel &amp;verwenden</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>S&amp;chließen</translation>
    </message>
    <message>
        <source>Rules and what they would do</source>
        <translation>Regeln und was sie täten</translation>
    </message>
    <message>
        <source>The rules could not be compared.</source>
        <translation>Die Regeln konnten nicht verglichen werden.</translation>
    </message>
    <message>
        <source>Asking every rule…</source>
        <translation>Jede Regel wird gefragt…</translation>
    </message>
</context>
<context>
    <name>kestrel::CompareWords</name>
    <message>
        <source>Selected track</source>
        <translation>Ausgewählter Titel</translation>
    </message>
    <message>
        <source>Why it is kept</source>
        <translation>Warum sie behalten wird</translation>
    </message>
    <message>
        <source>How many rules agree</source>
        <translation>Wie viele Regeln zustimmen</translation>
    </message>
    <message>
        <source>What the kept copy lacks</source>
        <translation>Was der behaltenen Kopie fehlt</translation>
    </message>
    <message>
        <source>The same in all</source>
        <translation>In allen gleich</translation>
    </message>
    <message>
        <source>The same in all copies</source>
        <translation>In allen Kopien gleich</translation>
    </message>
    <message>
        <source>Why they match</source>
        <translation>Warum sie zusammengehören</translation>
    </message>
    <message>
        <source>What the music application says</source>
        <translation>Was das Musikprogramm sagt</translation>
    </message>
    <message>
        <source>Select a track to compare it with its copies.</source>
        <translation>Wählen Sie einen Titel aus, um ihn mit seinen Kopien zu vergleichen.</translation>
    </message>
    <message>
        <source>Kept: %1</source>
        <translation>Behalten: %1</translation>
    </message>
    <message>
        <source>Doubtful: %1</source>
        <translation>Zweifelhaft: %1</translation>
    </message>
    <message>
        <source>Would go with copy %1: %2</source>
        <translation>Mit Kopie %1 ginge: %2</translation>
    </message>
    <message>
        <source>Copy %1: %2</source>
        <translation>Kopie %1: %2</translation>
    </message>
</context>
<context>
    <name>kestrel::ConnectDialog</name>
    <message>
        <source>Connect to MPD</source>
        <translation>Mit MPD verbinden</translation>
    </message>
    <message>
        <source>only if the server asks for one; it is not kept</source>
        <translation>nur wenn der Server eines verlangt; es wird nicht gespeichert</translation>
    </message>
    <message>
        <source>Music folder</source>
        <translation>Musikordner</translation>
    </message>
    <message>
        <source>where the server does not tell it</source>
        <translation>falls der Server ihn nicht nennt</translation>
    </message>
    <message>
        <source>&amp;Server or socket:</source>
        <translation>&amp;Server oder Socket:</translation>
    </message>
    <message>
        <source>&amp;Port:</source>
        <translation>&amp;Port:</translation>
    </message>
    <message>
        <source>Pass&amp;word:</source>
        <translation>Pass&amp;wort:</translation>
    </message>
    <message>
        <source>&amp;Music folder:</source>
        <translation>&amp;Musikordner:</translation>
    </message>
    <message>
        <source>Explanation</source>
        <translation>Erklärung</translation>
    </message>
    <message>
        <source>Kestrel reads songs and playlists from the server and changes its playlists. For playback, covers and the trash it needs the folder of the files on this computer.</source>
        <translation>Kestrel liest Titel und Wiedergabelisten vom Server und ändert dessen Wiedergabelisten. Für Wiedergabe, Cover und Papierkorb braucht es den Ordner der Dateien auf diesem Computer.</translation>
    </message>
    <message>
        <source>Connect</source>
        <translation>Verbinden</translation>
    </message>
    <message>
        <source>Why you are asked again</source>
        <translation>Warum noch einmal gefragt wird</translation>
    </message>
</context>
<context>
    <name>kestrel::CopyModel</name>
    <message>
        <source>its file stays: %1</source>
        <translation>die Datei bleibt: %1</translation>
    </message>
    <message>
        <source>⚠ %1</source>
        <translation>⚠ %1</translation>
    </message>
    <message>
        <source>stays: %1</source>
        <translation>bleibt: %1</translation>
    </message>
    <message>
        <source>☁ only in the cloud</source>
        <translation>☁ nur in der Cloud</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopie</translation>
    </message>
    <message>
        <source>Kept in its place</source>
        <translation>Behalten wird</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>its file is missing already; only the entry leaves the library</source>
        <translation>die Datei fehlt schon; nur der Eintrag verlässt die Bibliothek</translation>
    </message>
    <message>
        <source>goes with the copy: %1</source>
        <translation>geht mit der Kopie: %1</translation>
    </message>
</context>
<context>
    <name>kestrel::DecisionPane</name>
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
        <source>Among</source>
        <translation>Nur unter</translation>
    </message>
    <message>
        <source>%1 kbit/s</source>
        <translation>%1 kbit/s</translation>
    </message>
    <message>
        <source>Leave a group undecided rather than choose at random</source>
        <translation>Eine Gruppe lieber unentschieden lassen als zufällig wählen</translation>
    </message>
    <message>
        <source>Leave &amp;undecided,
not random</source>
        <translation>&amp;Unentschieden lassen,
nicht zufällig</translation>
    </message>
    <message>
        <source>What every other rule would do with these groups</source>
        <translation>Was jede andere Regel mit diesen Gruppen täte</translation>
    </message>
    <message>
        <source>Pre&amp;sets</source>
        <translation>&amp;Vorgaben</translation>
    </message>
    <message>
        <source>Rules that you have saved under names</source>
        <translation>Regeln, die Sie unter einem Namen gesichert haben</translation>
    </message>
    <message>
        <source>The order of folders or kinds that the rules above ask for</source>
        <translation>Die Reihenfolge der Ordner oder Arten, nach der die Regeln oben fragen</translation>
    </message>
    <message>
        <source>C&amp;ompare rules…</source>
        <translation>Regeln ver&amp;gleichen…</translation>
    </message>
    <message>
        <source>Wh&amp;at to prefer…</source>
        <translation>Was bevor&amp;zugt wird…</translation>
    </message>
</context>
<context>
    <name>kestrel::EmptyPage</name>
    <message>
        <source>Looking for duplicates</source>
        <translation>Duplikate werden gesucht</translation>
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
        <source>The search was stopped</source>
        <translation>Die Suche wurde angehalten</translation>
    </message>
    <message>
        <source>Nothing was changed.</source>
        <translation>Es wurde nichts geändert.</translation>
    </message>
    <message>
        <source>This library has no playlists</source>
        <translation>Diese Bibliothek hat keine Wiedergabelisten</translation>
    </message>
    <message>
        <source>A search looks through a playlist, and this library has none, not even that of all its tracks. Make a playlist in your music application, then open the library again.</source>
        <translation>Eine Suche sieht eine Wiedergabeliste durch, und diese Bibliothek hat keine, nicht einmal die aller Titel. Legen Sie in Ihrem Musikprogramm eine an, und öffnen Sie die Bibliothek dann noch einmal.</translation>
    </message>
    <message>
        <source>Find Duplicates</source>
        <translation>Duplikate finden</translation>
    </message>
    <message>
        <source>Progress of the search</source>
        <translation>Fortschritt der Suche</translation>
    </message>
    <message>
        <source>Try another field.</source>
        <translation>Versuchen Sie ein anderes Feld.</translation>
    </message>
    <message>
        <source>Look in the Whole Library</source>
        <translation>In der ganzen Bibliothek suchen</translation>
    </message>
    <message>
        <source>No library is open</source>
        <translation>Keine Bibliothek ist geöffnet</translation>
    </message>
    <message>
        <source>Stop (Esc)</source>
        <translation>Anhalten (Esc)</translation>
    </message>
    <message>
        <source>Open a Library…</source>
        <translation>Bibliothek öffnen…</translation>
    </message>
    <message>
        <source>Use File Name Instead</source>
        <translation>Stattdessen Dateiname verwenden</translation>
    </message>
    <message>
        <source>The filter hides everything</source>
        <translation>Der Filter verbirgt alles</translation>
    </message>
    <message>
        <source>No track of the result has “%1”.</source>
        <translation>Kein Titel des Ergebnisses enthält „%1“.</translation>
    </message>
    <message>
        <source>Clear Filter</source>
        <translation>Filter leeren</translation>
    </message>
    <message>
        <source>No duplicates by %1 in the whole library.</source>
        <translation>Keine Duplikate nach %1 in der ganzen Bibliothek.</translation>
    </message>
    <message>
        <source>One field less would find more:</source>
        <translation>Ein Feld weniger würde mehr finden:</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Dauer</translation>
    </message>
    <message>
        <source>Without %1: %2</source>
        <translation>Ohne %1: %2</translation>
    </message>
    <message>
        <source>In the whole library</source>
        <translation>In der ganzen Bibliothek</translation>
    </message>
    <message>
        <source>Ready to search the whole library</source>
        <translation>Bereit, die ganze Bibliothek zu durchsuchen</translation>
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
        <source>(not there)</source>
        <translation>(nicht vorhanden)</translation>
    </message>
    <message>
        <source>(deleted)</source>
        <translation>(gelöscht)</translation>
    </message>
    <message>
        <source>%1 kbit/s</source>
        <translation>%1 kbit/s</translation>
    </message>
    <message>
        <source>☁ in the cloud</source>
        <translation>☁ in der Cloud</translation>
    </message>
    <message>
        <source>⚠ its file is missing</source>
        <translation>⚠ die Datei fehlt</translation>
    </message>
    <message>
        <source>Not a song of the library</source>
        <translation>Kein Lied der Bibliothek</translation>
    </message>
    <message>
        <source>%1
(not in the library)</source>
        <translation>%1
(nicht in der Bibliothek)</translation>
    </message>
    <message>
        <source>added %1</source>
        <translation>hinzugefügt am %1</translation>
    </message>
    <message>
        <source>modified %1</source>
        <translation>geändert am %1</translation>
    </message>
    <message>
        <source>track %1</source>
        <translation>Titelnummer %1</translation>
    </message>
</context>
<context>
    <name>kestrel::ExportDialog</name>
    <message>
        <source>Format</source>
        <translation>Format</translation>
    </message>
    <message>
        <source>Explanation</source>
        <translation>Erklärung</translation>
    </message>
    <message>
        <source>Export Table</source>
        <translation>Tabelle exportieren</translation>
    </message>
    <message>
        <source>&amp;Report to Print</source>
        <translation>Bericht zum &amp;Drucken</translation>
    </message>
    <message>
        <source>&amp;Spreadsheet (CSV)</source>
        <translation>Tabe&amp;lle (CSV)</translation>
    </message>
    <message>
        <source>&amp;Data (JSON)</source>
        <translation>Da&amp;ten (JSON)</translation>
    </message>
    <message>
        <source>Canc&amp;el</source>
        <translation>Ab&amp;brechen</translation>
    </message>
    <message>
        <source>One file for any browser, with covers and why each copy is kept.</source>
        <translation>Eine Datei für jeden Browser, mit Covern und warum jede Kopie behalten wird.</translation>
    </message>
    <message>
        <source>A line for each track, with the columns that the table shows.</source>
        <translation>Eine Zeile je Titel, mit den Spalten, die die Tabelle zeigt.</translation>
    </message>
    <message>
        <source>The groups with their tracks, for other programs.</source>
        <translation>Die Gruppen mit ihren Titeln, für andere Programme.</translation>
    </message>
    <message>
        <source>Duplicates</source>
        <translation>Duplikate</translation>
    </message>
    <message>
        <source>Exporting…</source>
        <translation>Wird exportiert…</translation>
    </message>
    <message>
        <source>Duplicates in %1</source>
        <translation>Duplikate in %1</translation>
    </message>
    <message>
        <source>The table could not be exported.</source>
        <translation>Die Tabelle konnte nicht exportiert werden.</translation>
    </message>
</context>
<context>
    <name>kestrel::FilesElsewhereBar</name>
    <message>
        <source>Compare without files</source>
        <translation>Ohne Dateien vergleichen</translation>
    </message>
    <message>
        <source>Copies are compared by what the library says; only the trash is off</source>
        <translation>Kopien werden nach dem verglichen, was die Bibliothek sagt; nur der Papierkorb ist aus</translation>
    </message>
    <message>
        <source>Where is %1 now?</source>
        <translation>Wo ist %1 jetzt?</translation>
    </message>
    <message>
        <source>None of the missing files is in %1.</source>
        <translation>Keine der fehlenden Dateien ist in %1.</translation>
    </message>
    <message>
        <source>Choose the folder that holds them, or one above it.</source>
        <translation>Wählen Sie den Ordner, in dem sie liegen, oder einen darüber.</translation>
    </message>
    <message>
        <source>Use These Files</source>
        <translation>Diese Dateien verwenden</translation>
    </message>
    <message>
        <source>Where is this folder now?</source>
        <translation>Wo ist dieser Ordner jetzt?</translation>
    </message>
    <message>
        <source>Look for files again</source>
        <translation>Wieder nach Dateien sehen</translation>
    </message>
    <message>
        <source>Copies are compared without their files: nothing can go to the trash.</source>
        <translation>Kopien werden ohne ihre Dateien verglichen: nichts kann in den Papierkorb.</translation>
    </message>
</context>
<context>
    <name>kestrel::FilterField</name>
    <message>
        <source>Filter</source>
        <translation>Filtern</translation>
    </message>
    <message>
        <source>Filter the table by words</source>
        <translation>Die Tabelle nach Wörtern filtern</translation>
    </message>
    <message>
        <source>Rows that the filter shows</source>
        <translation>Zeilen, die der Filter zeigt</translation>
    </message>
    <message>
        <source>Clear Filter</source>
        <translation>Filter leeren</translation>
    </message>
</context>
<context>
    <name>kestrel::FinishBar</name>
    <message>
        <source>Repair playlists</source>
        <translation>Wiedergabelisten reparieren</translation>
    </message>
    <message>
        <source>Remove copies</source>
        <translation>Kopien entfernen</translation>
    </message>
    <message>
        <source>Review groups</source>
        <translation>Gruppen prüfen</translation>
    </message>
    <message>
        <source>Move files to the trash</source>
        <translation>Dateien in den Papierkorb</translation>
    </message>
    <message>
        <source>Each has one that is kept</source>
        <translation>In jeder wird eine Kopie behalten</translation>
    </message>
    <message>
        <source>Counting…</source>
        <translation>Wird gezählt…</translation>
    </message>
    <message>
        <source>They list only what is kept</source>
        <translation>Sie enthalten nur, was behalten wird</translation>
    </message>
    <message>
        <source>There is nothing left to remove</source>
        <translation>Es gibt nichts mehr zu entfernen</translation>
    </message>
</context>
<context>
    <name>kestrel::FolderField</name>
    <message>
        <source>Choose…</source>
        <translation>Wählen…</translation>
    </message>
    <message>
        <source>Choose: %1</source>
        <translation>Wählen: %1</translation>
    </message>
</context>
<context>
    <name>kestrel::GroupHeading</name>
    <message>
        <source>your choices differ</source>
        <translation>Ihre Entscheidungen widersprechen sich</translation>
    </message>
    <message>
        <source>undecided</source>
        <translation>unentschieden</translation>
    </message>
    <message>
        <source>same audio, bit for bit</source>
        <translation>gleiche Töne, Bit für Bit</translation>
    </message>
    <message>
        <source>same sound, %1</source>
        <translation>gleicher Klang, %1</translation>
    </message>
    <message>
        <source>same sound in part, %1</source>
        <translation>teilweise gleicher Klang, %1</translation>
    </message>
    <message>
        <source>another sound, %1</source>
        <translation>anderer Klang, %1</translation>
    </message>
    <message>
        <source>same sound</source>
        <translation>gleicher Klang</translation>
    </message>
</context>
<context>
    <name>kestrel::HistoryWindow</name>
    <message>
        <source>Move to trash</source>
        <translation>In den Papierkorb verschieben</translation>
    </message>
    <message>
        <source>Undo of run %1</source>
        <translation>Rückgängig: Durchlauf %1</translation>
    </message>
    <message>
        <source>↶ Undone</source>
        <translation>↶ Rückgängig gemacht</translation>
    </message>
    <message>
        <source>… Running</source>
        <translation>… Läuft</translation>
    </message>
    <message>
        <source>✓ Done, partly undone</source>
        <translation>✓ Erledigt, teilweise rückgängig gemacht</translation>
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
        <source>Undone</source>
        <translation>Rückgängig gemacht</translation>
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
        <source>What was undone</source>
        <translation>Was rückgängig gemacht wurde</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>Undo Only This &amp;Playlist</source>
        <translation>Nur diese &amp;Wiedergabeliste rückgängig machen</translation>
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
        <source>Undoing…</source>
        <translation>Wird rückgängig gemacht…</translation>
    </message>
    <message>
        <source>Add to playlist</source>
        <translation>Zu Wiedergabeliste hinzufügen</translation>
    </message>
    <message>
        <source>Add files</source>
        <translation>Dateien hinzufügen</translation>
    </message>
    <message>
        <source>⚠ Done in part</source>
        <translation>⚠ Zum Teil ausgeführt</translation>
    </message>
    <message>
        <source>Repair playlists</source>
        <translation>Wiedergabelisten reparieren</translation>
    </message>
    <message>
        <source>Clean up playlists</source>
        <translation>Wiedergabelisten aufräumen</translation>
    </message>
    <message>
        <source>Remove copies</source>
        <translation>Kopien entfernen</translation>
    </message>
    <message>
        <source>Playlist, Track or File</source>
        <translation>Wiedergabeliste, Titel oder Datei</translation>
    </message>
    <message>
        <source>Move to trash, repair playlists</source>
        <translation>In den Papierkorb verschieben, Wiedergabelisten reparieren</translation>
    </message>
    <message>
        <source>Undoing… %1 of %2</source>
        <translation>Wird rückgängig gemacht… %1 von %2</translation>
    </message>
</context>
<context>
    <name>kestrel::KeepSection</name>
    <message>
        <source>+ the&amp;n…</source>
        <translation>+ da&amp;nn…</translation>
    </message>
    <message>
        <source>Keep</source>
        <translation>Behalten</translation>
    </message>
    <message>
        <source>What decides where the rules above leave several copies</source>
        <translation>Was entscheidet, wenn die Regeln darüber mehrere Kopien übrig lassen</translation>
    </message>
    <message>
        <source>Rule that decides which copy is kept</source>
        <translation>Regel, nach der eine Kopie behalten wird</translation>
    </message>
    <message>
        <source>Rule %1, where those before it leave several copies</source>
        <translation>Regel %1, wenn die vorigen mehrere Kopien übrig lassen</translation>
    </message>
    <message>
        <source>✕</source>
        <translation>✕</translation>
    </message>
    <message>
        <source>Do without this rule</source>
        <translation>Auf diese Regel verzichten</translation>
    </message>
    <message>
        <source>Do without rule %1</source>
        <translation>Auf Regel %1 verzichten</translation>
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
</context>
<context>
    <name>kestrel::LeftOutSheet</name>
    <message>
        <source>Not Duplicates</source>
        <translation>Keine Duplikate</translation>
    </message>
    <message>
        <source>Explanation</source>
        <translation>Erklärung</translation>
    </message>
    <message>
        <source>You have said that these are no duplicates, so a search leaves them out until a track joins them. Tick those that it is to show again.</source>
        <translation>Sie haben gesagt, dass dies keine Duplikate sind. Eine Suche lässt sie aus, bis ein Titel hinzukommt. Haken Sie an, was wieder gezeigt werden soll.</translation>
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
        <source>Copies</source>
        <translation>Kopien</translation>
    </message>
    <message>
        <source>Groups that are no duplicates</source>
        <translation>Gruppen, die keine Duplikate sind</translation>
    </message>
    <message>
        <source>&amp;Tick All</source>
        <translation>&amp;Alle anhaken</translation>
    </message>
    <message>
        <source>Cl&amp;ose</source>
        <translation>&amp;Schließen</translation>
    </message>
</context>
<context>
    <name>kestrel::LeftSide</name>
    <message>
        <source>&amp;Playlists</source>
        <translation>&amp;Wiedergabelisten</translation>
    </message>
    <message>
        <source>Decisions and playlists</source>
        <translation>Entscheidungen und Wiedergabelisten</translation>
    </message>
    <message>
        <source>De&amp;cide</source>
        <translation>&amp;Entscheiden</translation>
    </message>
</context>
<context>
    <name>kestrel::LibraryMenu</name>
    <message>
        <source>&amp;Library</source>
        <translation>&amp;Bibliothek</translation>
    </message>
    <message>
        <source>Found on this computer</source>
        <translation>Auf diesem Computer gefunden</translation>
    </message>
    <message>
        <source>Recent</source>
        <translation>Zuletzt geöffnet</translation>
    </message>
    <message>
        <source>Others</source>
        <translation>Andere</translation>
    </message>
    <message>
        <source>This library</source>
        <translation>Diese Bibliothek</translation>
    </message>
</context>
<context>
    <name>kestrel::LibraryRow</name>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Open %1</source>
        <translation>%1 öffnen</translation>
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
        <source>Open &amp;Demo Library</source>
        <translation>&amp;Demo-Bibliothek öffnen</translation>
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
        <source>Show in &amp;Folder</source>
        <translation>Im &amp;Ordner anzeigen</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
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
        <source>&amp;Duplicates</source>
        <translation>&amp;Duplikate</translation>
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
        <source>The outline does not show this playlist.</source>
        <translation>Die Übersicht zeigt diese Wiedergabeliste nicht.</translation>
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
        <source>&amp;Add Files to Library…</source>
        <translation>Dateien zur Bibliothek &amp;hinzufügen…</translation>
    </message>
    <message>
        <source>Re&amp;fresh Library</source>
        <translation>Bibliothek neu &amp;laden</translation>
    </message>
    <message>
        <source>Find Duplicates at St&amp;art</source>
        <translation>Beim S&amp;tart Duplikate finden</translation>
    </message>
    <message>
        <source>&amp;Next Group Without Keeper</source>
        <translation>&amp;Nächste Gruppe ohne behaltenen Titel</translation>
    </message>
    <message>
        <source>Copy P&amp;ath</source>
        <translation>&amp;Pfad kopieren</translation>
    </message>
    <message>
        <source>Add to Pla&amp;ylist…</source>
        <translation>&amp;Zu Wiedergabeliste hinzufügen…</translation>
    </message>
    <message>
        <source>T&amp;rack</source>
        <translation>&amp;Titel</translation>
    </message>
    <message>
        <source>A&amp;ppearance</source>
        <translation>Aussehe&amp;n</translation>
    </message>
    <message>
        <source>Add Files to Library</source>
        <translation>Dateien zur Bibliothek hinzufügen</translation>
    </message>
    <message>
        <source>Audio files (*.mp3 *.m4a *.aac *.wav *.aif *.aiff *.flac *.ogg *.opus)</source>
        <translation>Audiodateien (*.mp3 *.m4a *.aac *.wav *.aif *.aiff *.flac *.ogg *.opus)</translation>
    </message>
    <message>
        <source>Select the tracks to be replaced in playlists.</source>
        <translation>Wählen Sie die Titel aus, die in Wiedergabelisten ersetzt werden sollen.</translation>
    </message>
    <message>
        <source>Every group has a keeper.</source>
        <translation>In jeder Gruppe wird ein Titel behalten.</translation>
    </message>
    <message>
        <source>There is no other group without a keeper in the table.</source>
        <translation>In der Tabelle gibt es keine weitere Gruppe ohne behaltenen Titel.</translation>
    </message>
    <message>
        <source>Ticks stay as they are while a task is running.</source>
        <translation>Häkchen bleiben, wie sie sind, solange eine Aufgabe läuft.</translation>
    </message>
    <message>
        <source>Only in “%1”: </source>
        <translation>Nur in „%1“: </translation>
    </message>
    <message>
        <source>Selected tracks</source>
        <translation>Ausgewählte Titel</translation>
    </message>
    <message>
        <source>Selection</source>
        <translation>Auswahl</translation>
    </message>
    <message>
        <source>Add to Playlist</source>
        <translation>Zu Wiedergabeliste hinzufügen</translation>
    </message>
    <message numerus="yes">
        <source>&amp;Add the tracks of these groups (%n) to the end of</source>
        <translation>
            <numerusform>Den %n Titel dieser Gruppen &amp;anfügen an</numerusform>
            <numerusform>Die %n Titel dieser Gruppen &amp;anfügen an</numerusform>
        </translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>&amp;Repair Playlists…</source>
        <translation>Wiedergabelisten &amp;reparieren…</translation>
    </message>
    <message>
        <source>Put the copies that are kept into the playlists that list others (Ctrl+R)</source>
        <translation>Die behaltenen Kopien in die Wiedergabelisten setzen, die andere enthalten (Strg+R)</translation>
    </message>
    <message>
        <source>Repair Playlists for the Se&amp;lection…</source>
        <translation>Wiedergabelisten für &amp;die Auswahl reparieren…</translation>
    </message>
    <message>
        <source>Re&amp;move Copies…</source>
        <translation>Kopien &amp;entfernen…</translation>
    </message>
    <message>
        <source>Take the copies that are not kept out of the library, and their files to the trash (Ctrl+Shift+Delete)</source>
        <translation>Die nicht behaltenen Kopien aus der Bibliothek nehmen und ihre Dateien in den Papierkorb (Strg+Umschalt+Entf)</translation>
    </message>
    <message>
        <source>E&amp;xport Table…</source>
        <translation>Tabelle e&amp;xportieren…</translation>
    </message>
    <message>
        <source>What was left out when the library was read</source>
        <translation>Was beim Lesen der Bibliothek ausgelassen wurde</translation>
    </message>
    <message>
        <source>&amp;Open Document…</source>
        <translation>&amp;Dokument öffnen…</translation>
    </message>
    <message>
        <source>Open &amp;Folder…</source>
        <translation>&amp;Ordner öffnen…</translation>
    </message>
    <message>
        <source>&amp;Connect to MPD…</source>
        <translation>&amp;Mit MPD verbinden…</translation>
    </message>
    <message>
        <source>&amp;Notes on This Library…</source>
        <translation>&amp;Hinweise zu dieser Bibliothek…</translation>
    </message>
    <message>
        <source>S&amp;ettings…</source>
        <translation>&amp;Einstellungen…</translation>
    </message>
    <message>
        <source>Open Library Document</source>
        <translation>Bibliotheksdokument öffnen</translation>
    </message>
    <message>
        <source>Open Folder of Music</source>
        <translation>Musikordner öffnen</translation>
    </message>
    <message>
        <source>Notes on This Library</source>
        <translation>Hinweise zu dieser Bibliothek</translation>
    </message>
    <message>
        <source>Explanation</source>
        <translation>Erklärung</translation>
    </message>
    <message>
        <source>What was left out when the library was read, and what is special about it:</source>
        <translation>Was beim Lesen der Bibliothek ausgelassen wurde und was an ihr besonders ist:</translation>
    </message>
    <message>
        <source>Notes</source>
        <translation>Hinweise</translation>
    </message>
    <message>
        <source>Show C&amp;overs</source>
        <translation>C&amp;over zeigen</translation>
    </message>
    <message>
        <source>Not &amp;Duplicates</source>
        <translation>Keine D&amp;uplikate</translation>
    </message>
    <message>
        <source>&amp;Unfold</source>
        <translation>&amp;Ausklappen</translation>
    </message>
    <message>
        <source>&amp;Fold</source>
        <translation>&amp;Einklappen</translation>
    </message>
    <message>
        <source>Move the Copies That Are Not Kept to the &amp;Trash…</source>
        <translation>Kopien, die nicht behalten werden, in den &amp;Papierkorb legen…</translation>
    </message>
    <message>
        <source>Compare R&amp;ules…</source>
        <translation>Regeln &amp;vergleichen…</translation>
    </message>
    <message>
        <source>F1 lists the keys and the symbols.</source>
        <translation>F1 zeigt die Tasten und Symbole.</translation>
    </message>
    <message>
        <source>Compare the S&amp;ound</source>
        <translation>Klan&amp;g vergleichen</translation>
    </message>
    <message>
        <source>Listen to the files of all groups, and compare them</source>
        <translation>Die Dateien aller Gruppen anhören und vergleichen</translation>
    </message>
    <message>
        <source>&amp;Keys and Symbols</source>
        <translation>&amp;Tasten und Symbole</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>Bearbe&amp;iten</translation>
    </message>
    <message>
        <source>Stopped. What was listened to is kept: the next comparison goes on there.</source>
        <translation>Angehalten. Was angehört wurde, bleibt bekannt: Der nächste Vergleich geht dort weiter.</translation>
    </message>
    <message>
        <source>No copy could be compared by its sound.</source>
        <translation>Keine Kopie konnte nach ihrem Klang verglichen werden.</translation>
    </message>
    <message>
        <source>All copies that could be compared sound like the ones that are kept.</source>
        <translation>Alle Kopien, die sich vergleichen ließen, klingen wie die behaltenen.</translation>
    </message>
    <message>
        <source>All that can be opened (%1)</source>
        <translation>Alles, was sich öffnen lässt (%1)</translation>
    </message>
    <message>
        <source>&amp;Stop</source>
        <translation>&amp;Anhalten</translation>
    </message>
    <message>
        <source>Play o&amp;r Pause</source>
        <translation>Abspie&amp;len oder anhalten</translation>
    </message>
    <message>
        <source>&amp;Keep This One</source>
        <translation>Dieses &amp;behalten</translation>
    </message>
</context>
<context>
    <name>kestrel::MatchSection</name>
    <message>
        <source>Match by</source>
        <translation>Gleich in</translation>
    </message>
    <message>
        <source>This criterion makes every search come back empty. Untick it and use File Name.</source>
        <translation>Mit diesem Kriterium bleibt jede Suche ohne Ergebnis. Entfernen Sie das Häkchen und verwenden Sie „Dateiname“.</translation>
    </message>
    <message>
        <source>Capitals and small letters differ</source>
        <translation>Groß- und Kleinbuchstaben gelten als verschieden</translation>
    </message>
    <message>
        <source>&amp;More fields</source>
        <translation>Weitere Fe&amp;lder</translation>
    </message>
    <message>
        <source>&amp;Time</source>
        <translation>S&amp;pieldauer</translation>
    </message>
    <message>
        <source>exact</source>
        <comment>playing times</comment>
        <translation>genau</translation>
    </message>
    <message>
        <source> s</source>
        <comment>seconds</comment>
        <translation> s</translation>
    </message>
    <message>
        <source>How far playing times may lie apart</source>
        <translation>Wie weit Spieldauern auseinander liegen dürfen</translation>
    </message>
    <message>
        <source>Largest difference of playing times in seconds</source>
        <translation>Größter Unterschied der Spieldauern in Sekunden</translation>
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
        <source>the same</source>
        <comment>number of groups</comment>
        <translation>gleich viele</translation>
    </message>
    <message>
        <source>Match case</source>
        <translation>Groß-/Kleinschreibung</translation>
    </message>
    <message>
        <source>When values are compared, pass over:</source>
        <translation>Beim Vergleichen übergehen:</translation>
    </message>
    <message>
        <source>Looser: accents, “feat.”…</source>
        <translation>Lockerer: Akzente, „feat.“…</translation>
    </message>
    <message>
        <source>What may differ in names and still match</source>
        <translation>Was in Namen abweichen darf und doch als gleich gilt</translation>
    </message>
    <message>
        <source>With any of these, a song without a value in a ticked field matches none, unless the last is ticked too.</source>
        <translation>Mit einem davon stimmt ein Titel ohne Wert in einem angehakten Feld mit keinem überein, außer wenn auch das Letzte angehakt ist.</translation>
    </message>
</context>
<context>
    <name>kestrel::OrderEditor</name>
    <message>
        <source>Up</source>
        <translation>Nach oben</translation>
    </message>
    <message>
        <source>Down</source>
        <translation>Nach unten</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Order of folders</source>
        <translation>Reihenfolge der Ordner</translation>
    </message>
    <message>
        <source>Order of kinds</source>
        <translation>Reihenfolge der Arten</translation>
    </message>
    <message>
        <source>Add Folder…</source>
        <translation>Ordner hinzufügen…</translation>
    </message>
    <message>
        <source>Add Kind…</source>
        <translation>Art hinzufügen…</translation>
    </message>
    <message>
        <source>Folder to Prefer</source>
        <translation>Bevorzugter Ordner</translation>
    </message>
    <message>
        <source>Kind to Prefer</source>
        <translation>Bevorzugte Art</translation>
    </message>
    <message>
        <source>&amp;What the kind&apos;s name contains:</source>
        <translation>&amp;Was der Name der Art enthält:</translation>
    </message>
    <message>
        <source>&amp;Add</source>
        <translation>&amp;Hinzufügen</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>Ab&amp;brechen</translation>
    </message>
    <message>
        <source>What to Prefer</source>
        <translation>Was bevorzugt wird</translation>
    </message>
    <message>
        <source>Copies in these folders are kept before others, those of the first folder before all.</source>
        <translation>Kopien in diesen Ordnern werden vor anderen behalten, die im ersten Ordner vor allen.</translation>
    </message>
    <message>
        <source>Copies of these kinds are kept before others, those of the first kind before all.</source>
        <translation>Kopien dieser Arten werden vor anderen behalten, die der ersten Art vor allen.</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>S&amp;chließen</translation>
    </message>
    <message>
        <source>No folder yet: what lies in the first one is kept before all else.</source>
        <translation>Noch kein Ordner: Was im ersten liegt, wird vor allem anderen behalten.</translation>
    </message>
    <message>
        <source>No kind yet: copies of the first one are kept before all others.</source>
        <translation>Noch keine Art: Kopien der ersten werden vor allen anderen behalten.</translation>
    </message>
</context>
<context>
    <name>kestrel::OutcomeList</name>
    <message>
        <source>✓ Undone</source>
        <translation>✓ Rückgängig gemacht</translation>
    </message>
    <message>
        <source>✓ Carried over</source>
        <translation>✓ Mitgegeben</translation>
    </message>
    <message>
        <source>✓ Added</source>
        <translation>✓ Hinzugefügt</translation>
    </message>
    <message>
        <source>✓ Moved, %1</source>
        <translation>✓ Verschoben, %1</translation>
    </message>
    <message>
        <source>✓ Removed</source>
        <translation>✓ Entfernt</translation>
    </message>
    <message>
        <source>✓ %1 replaced, %2 deleted</source>
        <translation>✓ %1 ersetzt, %2 gelöscht</translation>
    </message>
    <message>
        <source>– Nothing to undo</source>
        <translation>– Nichts rückgängig zu machen</translation>
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
        <source>✓ Removed, %1 to the trash</source>
        <translation>✓ Entfernt, %1 in den Papierkorb</translation>
    </message>
    <message>
        <source>✓ Removed; its file was missing already</source>
        <translation>✓ Entfernt; die Datei fehlte schon</translation>
    </message>
    <message>
        <source>✓ Removed; its file stays</source>
        <translation>✓ Entfernt; die Datei bleibt</translation>
    </message>
    <message>
        <source>– Left out</source>
        <translation>– Ausgelassen</translation>
    </message>
    <message>
        <source>Where the files are</source>
        <translation>Wo die Dateien sind</translation>
    </message>
    <message>
        <source>What was done</source>
        <translation>Was getan wurde</translation>
    </message>
    <message>
        <source>“…” stands for %1</source>
        <translation>„…“ steht für %1</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Playlist or File</source>
        <translation>Wiedergabeliste oder Datei</translation>
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
    <message>
        <source>It is in the cloud: there is no local file.</source>
        <translation>Er ist in der Cloud: Es gibt keine lokale Datei.</translation>
    </message>
    <message>
        <source>The library names no file for it.</source>
        <translation>Die Bibliothek nennt keine Datei dazu.</translation>
    </message>
    <message>
        <source>Its file is missing: %1</source>
        <translation>Seine Datei fehlt: %1</translation>
    </message>
    <message>
        <source>The track could not be shown.</source>
        <translation>Der Titel konnte nicht gezeigt werden.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>kestrel::PlaylistEntryModel</name>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Artist</source>
        <translation>Interpret</translation>
    </message>
    <message>
        <source>not a song</source>
        <translation>kein Musiktitel</translation>
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
    <name>kestrel::PlaylistsPane</name>
    <message>
        <source>Entries of the playlist</source>
        <translation>Einträge der Wiedergabeliste</translation>
    </message>
    <message>
        <source>Choose a playlist to see what it holds.</source>
        <translation>Wählen Sie eine Wiedergabeliste, um zu sehen, was sie enthält.</translation>
    </message>
    <message>
        <source>&amp;Find Duplicates in It</source>
        <translation>&amp;Duplikate darin finden</translation>
    </message>
    <message>
        <source>&amp;Look in It</source>
        <translation>Darin &amp;suchen</translation>
    </message>
    <message>
        <source>&amp;Copy Name</source>
        <translation>Namen &amp;kopieren</translation>
    </message>
    <message>
        <source>&amp;Show in Folder</source>
        <translation>Im &amp;Ordner zeigen</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>Copy P&amp;ath</source>
        <translation>&amp;Pfad kopieren</translation>
    </message>
</context>
<context>
    <name>kestrel::PresetMenu</name>
    <message>
        <source>Saved rules</source>
        <translation>Gesicherte Regeln</translation>
    </message>
    <message>
        <source>&amp;Save These Rules as Preset…</source>
        <translation>Diese Regeln als Vorgabe &amp;sichern…</translation>
    </message>
    <message>
        <source>Re&amp;name</source>
        <translation>&amp;Umbenennen</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>&amp;Entfernen</translation>
    </message>
    <message>
        <source>&amp;Name:</source>
        <translation>&amp;Name:</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Sichern</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>Ab&amp;brechen</translation>
    </message>
    <message>
        <source>Save Rules as Preset</source>
        <translation>Regeln als Vorgabe sichern</translation>
    </message>
    <message>
        <source>Rename Preset</source>
        <translation>Vorgabe umbenennen</translation>
    </message>
    <message>
        <source>Remove the preset “%1”?</source>
        <translation>Die Vorgabe „%1“ entfernen?</translation>
    </message>
    <message>
        <source>Its rules stay chosen if they are; only the name goes.</source>
        <translation>Ihre Regeln bleiben gewählt, wenn sie es sind; nur der Name geht.</translation>
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
    <name>kestrel::ReadingPage</name>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>What is going on</source>
        <translation>Was gerade geschieht</translation>
    </message>
    <message>
        <source>How far it is</source>
        <translation>Wie weit es ist</translation>
    </message>
    <message>
        <source>Progress of reading the library</source>
        <translation>Fortschritt beim Lesen der Bibliothek</translation>
    </message>
    <message>
        <source>Reading %1</source>
        <translation>%1 wird gelesen</translation>
    </message>
    <message>
        <source>Reading %1 again</source>
        <translation>%1 wird neu gelesen</translation>
    </message>
</context>
<context>
    <name>kestrel::RemovalDialog</name>
    <message>
        <source>Remove Copies</source>
        <translation>Kopien entfernen</translation>
    </message>
    <message>
        <source>Move to Trash</source>
        <translation>In den Papierkorb</translation>
    </message>
    <message>
        <source>Question</source>
        <translation>Frage</translation>
    </message>
    <message>
        <source>Explanation</source>
        <translation>Erklärung</translation>
    </message>
    <message>
        <source>Playlists</source>
        <translation>Wiedergabelisten</translation>
    </message>
    <message>
        <source>Where a playlist lists the kept copy already</source>
        <translation>Wenn eine Wiedergabeliste die behaltene Kopie schon enthält</translation>
    </message>
    <message>
        <source>Copies</source>
        <translation>Kopien</translation>
    </message>
    <message>
        <source>What is chosen</source>
        <translation>Was gewählt ist</translation>
    </message>
    <message>
        <source>They leave the library, and their files go to the trash. All of it can be undone from the history.</source>
        <translation>Sie verlassen die Bibliothek, und ihre Dateien kommen in den Papierkorb. Alles lässt sich aus dem Verlauf rückgängig machen.</translation>
    </message>
    <message>
        <source>The library goes on listing their tracks. What is moved can be moved back from the history.</source>
        <translation>Die Bibliothek führt ihre Titel weiter. Was verschoben wird, lässt sich aus dem Verlauf zurückholen.</translation>
    </message>
    <message>
        <source>&amp;Keep Both Entries</source>
        <translation>Beide be&amp;halten</translation>
    </message>
    <message>
        <source>Dr&amp;op the Repeat</source>
        <translation>Wiederholung weg&amp;lassen</translation>
    </message>
    <message>
        <source>C&amp;heck All</source>
        <translation>Alle ankre&amp;uzen</translation>
    </message>
    <message>
        <source>But for what is not safe</source>
        <translation>Außer dem, was nicht sicher ist</translation>
    </message>
    <message>
        <source>Check &amp;None</source>
        <translation>&amp;Keine ankreuzen</translation>
    </message>
    <message>
        <source>Canc&amp;el</source>
        <translation>Ab&amp;brechen</translation>
    </message>
    <message>
        <source>Looking at the files…</source>
        <translation>Die Dateien werden angesehen…</translation>
    </message>
    <message>
        <source>The files could not be looked at.</source>
        <translation>Die Dateien konnten nicht angesehen werden.</translation>
    </message>
    <message>
        <source>&amp;Remove Copies</source>
        <translation>Kopien &amp;entfernen</translation>
    </message>
    <message>
        <source>&amp;Move to the Trash</source>
        <translation>In den Papierkorb &amp;verschieben</translation>
    </message>
    <message>
        <source>There is nothing to remove: all of these tracks are kept.</source>
        <translation>Es gibt nichts zu entfernen: Alle diese Titel werden behalten.</translation>
    </message>
    <message>
        <source>Nothing is checked.</source>
        <translation>Nichts ist angekreuzt.</translation>
    </message>
    <message>
        <source>There is nothing to remove: see below why these stay.</source>
        <translation>Es gibt nichts zu entfernen: Unten steht, warum diese bleiben.</translation>
    </message>
    <message>
        <source>Removing copies…</source>
        <translation>Kopien werden entfernt…</translation>
    </message>
    <message>
        <source>Moving files to the trash…</source>
        <translation>Dateien werden in den Papierkorb verschoben…</translation>
    </message>
    <message>
        <source>Re&amp;pair playlists too</source>
        <translation>Wiedergabelisten auch re&amp;parieren</translation>
    </message>
    <message>
        <source>What is lost</source>
        <translation>Was verloren geht</translation>
    </message>
    <message>
        <source>What goes with them and the kept copies lack: %1.</source>
        <translation>Was mit ihnen geht und den behaltenen Kopien fehlt: %1.</translation>
    </message>
    <message>
        <source>They leave the library. None of their files is here, so no file goes to the trash. It can be undone from the history.</source>
        <translation>Sie verlassen die Bibliothek. Keine ihrer Dateien ist hier, also kommt keine in den Papierkorb. Es lässt sich aus dem Verlauf rückgängig machen.</translation>
    </message>
    <message>
        <source>Looking into the other libraries of this computer…</source>
        <translation>Die anderen Bibliotheken dieses Rechners werden angesehen…</translation>
    </message>
    <message>
        <source>Their tracks leave the library with them. What is moved can be moved back from the history.</source>
        <translation>Ihre Titel verlassen die Bibliothek mit ihnen. Was verschoben wird, lässt sich aus dem Verlauf zurückholen.</translation>
    </message>
    <message>
        <source>Carry over to the kept copies:</source>
        <translation>Den behaltenen Kopien mitgeben:</translation>
    </message>
    <message>
        <source>pla&amp;ys</source>
        <translation>Wieder&amp;gaben</translation>
    </message>
    <message>
        <source>rat&amp;ing</source>
        <translation>Wer&amp;tung</translation>
    </message>
    <message>
        <source>da&amp;te added</source>
        <translation>Datum des Hinzu&amp;fügens</translation>
    </message>
    <message>
        <source>&amp;comments</source>
        <translation>Ko&amp;mmentare</translation>
    </message>
    <message>
        <source>The higher, the earlier, the sum, or what is missing</source>
        <translation>Das Höhere, das Frühere, die Summe oder was fehlt</translation>
    </message>
    <message>
        <source>Carried over: %1.</source>
        <translation>Wird mitgegeben: %1.</translation>
    </message>
    <message>
        <source>Only what so&amp;unds the same</source>
        <translation>N&amp;ur was gleich klingt</translation>
    </message>
    <message>
        <source>Copies that sound otherwise, or could not be compared, are not ticked</source>
        <translation>Kopien, die anders klingen oder nicht verglichen werden konnten, sind nicht angehakt</translation>
    </message>
    <message>
        <source>Show Entrie&amp;s</source>
        <translation>Ei&amp;nträge einblenden</translation>
    </message>
    <message>
        <source>Hide Entrie&amp;s</source>
        <translation>Ei&amp;nträge ausblenden</translation>
    </message>
    <message>
        <source>What goes all the same: %1.</source>
        <translation>Verloren geht trotzdem: %1.</translation>
    </message>
</context>
<context>
    <name>kestrel::RepairList</name>
    <message>
        <source>Playlist</source>
        <translation>Wiedergabeliste</translation>
    </message>
    <message>
        <source>To Change</source>
        <translation>Zu ändern</translation>
    </message>
    <message>
        <source>Playlists that list copies</source>
        <translation>Wiedergabelisten, die Kopien aufführen</translation>
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
        <source>Remark</source>
        <translation>Anmerkung</translation>
    </message>
    <message>
        <source>Entries that get the kept copy</source>
        <translation>Einträge, die die behaltene Kopie bekommen</translation>
    </message>
    <message>
        <source>Its copy stays: %1</source>
        <translation>Seine Kopie bleibt: %1</translation>
    </message>
    <message>
        <source>Left as it is, so its copy stays</source>
        <translation>Bleibt, wie er ist; darum bleibt auch seine Kopie</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>“%1”</source>
        <translation>„%1“</translation>
    </message>
</context>
<context>
    <name>kestrel::ReplaylistWindow</name>
    <message>
        <source>Playlists that hold tracks that are not kept</source>
        <translation>Wiedergabelisten mit Titeln, die nicht behalten werden</translation>
    </message>
    <message>
        <source>Check &amp;None</source>
        <translation>&amp;Keine ankreuzen</translation>
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
        <source>Warnings and what is left out</source>
        <translation>Warnungen und was ausgelassen wird</translation>
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
        <source>Hide &amp;Tracks</source>
        <translation>&amp;Titel ausblenden</translation>
    </message>
    <message>
        <source>The playlists could not be looked through.</source>
        <translation>Die Wiedergabelisten konnten nicht durchgesehen werden.</translation>
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
        <source>Putting keepers into the playlists…</source>
        <translation>Behaltene Titel werden in die Wiedergabelisten eingesetzt…</translation>
    </message>
    <message>
        <source>No playlist of yours holds a track that is not kept.</source>
        <translation>Keine Ihrer Wiedergabelisten enthält einen Titel, der nicht behalten wird.</translation>
    </message>
    <message>
        <source>Left out: %1.</source>
        <translation>Ausgelassen: %1.</translation>
    </message>
    <message>
        <source>Repeats</source>
        <translation>Wiederholungen</translation>
    </message>
    <message>
        <source>Where a playlist lists the kept copy already</source>
        <translation>Wenn eine Wiedergabeliste die behaltene Kopie schon enthält</translation>
    </message>
    <message>
        <source>&amp;Keep Both Entries</source>
        <translation>Beide be&amp;halten</translation>
    </message>
    <message>
        <source>Dr&amp;op the Repeat</source>
        <translation>Wiederholung weg&amp;lassen</translation>
    </message>
    <message>
        <source>These playlists list copies that are not kept. Each such entry gets the kept copy of its group; what is not checked stays as it is.</source>
        <translation>Diese Wiedergabelisten enthalten Kopien, die nicht behalten werden. Jeder solche Eintrag bekommt die behaltene Kopie seiner Gruppe; was nicht angekreuzt ist, bleibt, wie es ist.</translation>
    </message>
    <message>
        <source>C&amp;heck All</source>
        <translation>Alle ankre&amp;uzen</translation>
    </message>
    <message>
        <source>Repair Playlists</source>
        <translation>Wiedergabelisten reparieren</translation>
    </message>
    <message>
        <source>The playlist lists the kept copy already</source>
        <translation>Die Wiedergabeliste enthält die behaltene Kopie schon</translation>
    </message>
    <message>
        <source>To Change</source>
        <translation>Zu ändern</translation>
    </message>
    <message>
        <source>Its file is here, what would take its place only in the cloud</source>
        <translation>Die Datei ist hier; was an ihre Stelle käme, ist nur in der Cloud</translation>
    </message>
</context>
<context>
    <name>kestrel::ResultBar</name>
    <message>
        <source>Decided by you</source>
        <translation>Von Ihnen entschieden</translation>
    </message>
    <message>
        <source>Groups as found</source>
        <translation>Gruppen wie gefunden</translation>
    </message>
    <message>
        <source>Most space first</source>
        <translation>Größte Ersparnis zuerst</translation>
    </message>
    <message>
        <source>Most copies first</source>
        <translation>Meiste Kopien zuerst</translation>
    </message>
    <message>
        <source>Most playlists first</source>
        <translation>Meiste Wiedergabelisten zuerst</translation>
    </message>
    <message>
        <source>Sorted by column</source>
        <translation>Nach Spalte sortiert</translation>
    </message>
    <message>
        <source>Order of the groups</source>
        <translation>Reihenfolge der Gruppen</translation>
    </message>
    <message>
        <source>The order of the groups. A click on the head of a column sorts the tracks by it, whatever their group.</source>
        <translation>Die Reihenfolge der Gruppen. Ein Klick auf einen Spaltenkopf sortiert die Titel danach, gleich welcher Gruppe.</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Verwerfen</translation>
    </message>
    <message>
        <source>Unfold All</source>
        <translation>Alle aufklappen</translation>
    </message>
    <message>
        <source>Fold All</source>
        <translation>Alle zuklappen</translation>
    </message>
    <message>
        <source>Show only groups that may be no duplicates: the reason stands beside their names</source>
        <translation>Nur Gruppen zeigen, die vielleicht keine Duplikate sind: der Grund steht neben ihren Namen</translation>
    </message>
    <message>
        <source>Doubtful first</source>
        <translation>Zweifelhafte zuerst</translation>
    </message>
    <message>
        <source>Rules disagree first</source>
        <translation>Umstrittene zuerst</translation>
    </message>
    <message>
        <source>Show…</source>
        <translation>Zeigen…</translation>
    </message>
</context>
<context>
    <name>kestrel::ResultTableModel</name>
    <message>
        <source>Not kept</source>
        <translation>Wird nicht behalten</translation>
    </message>
    <message>
        <source>Kept</source>
        <translation>Behalten</translation>
    </message>
    <message>
        <source>
Chosen by you</source>
        <translation>
Von Ihnen gewählt</translation>
    </message>
    <message>
        <source>
In the cloud: there is no local file</source>
        <translation>
In der Cloud: keine Datei auf diesem Rechner</translation>
    </message>
    <message>
        <source>
The file is missing</source>
        <translation>
Die Datei fehlt</translation>
    </message>
    <message>
        <source>%1: nothing</source>
        <translation>%1: nichts</translation>
    </message>
    <message>
        <source>Group, folded: %1</source>
        <translation>Gruppe, zugeklappt: %1</translation>
    </message>
    <message>
        <source>Group: %1</source>
        <translation>Gruppe: %1</translation>
    </message>
    <message>
        <source>Copy %1 of %2</source>
        <translation>Kopie %1 von %2</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Keep</source>
        <translation>Behalten</translation>
    </message>
    <message>
        <source>
A stream from the net: there is no file</source>
        <translation>
Ein Stream aus dem Netz: Es gibt keine Datei</translation>
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
    <name>kestrel::ReviewWindow</name>
    <message>
        <source>Playlist</source>
        <translation>Wiedergabeliste</translation>
    </message>
    <message>
        <source>Entries</source>
        <translation>Einträge</translation>
    </message>
    <message>
        <source>Selected playlist</source>
        <translation>Ausgewählte Wiedergabeliste</translation>
    </message>
    <message>
        <source>What is chosen</source>
        <translation>Was angekreuzt ist</translation>
    </message>
    <message>
        <source>Canc&amp;el</source>
        <translation>Ab&amp;brechen</translation>
    </message>
    <message>
        <source>Show Play&amp;list</source>
        <translation>Wiedergabeliste &amp;zeigen</translation>
    </message>
    <message>
        <source>Show the highlighted playlist in the music application</source>
        <translation>Die markierte Wiedergabeliste in der Musik-Anwendung zeigen</translation>
    </message>
</context>
<context>
    <name>kestrel::RuleOutcomeModel</name>
    <message>
        <source>, then </source>
        <translation>, dann </translation>
    </message>
    <message>
        <source>%1 (in use)</source>
        <translation>%1 (in Gebrauch)</translation>
    </message>
    <message>
        <source>Rule</source>
        <translation>Regel</translation>
    </message>
    <message>
        <source>Other keeper</source>
        <translation>Andere Kopie</translation>
    </message>
    <message>
        <source>Groups that would keep another copy than now</source>
        <translation>Gruppen, in denen eine andere Kopie bliebe als jetzt</translation>
    </message>
    <message>
        <source>Playlists</source>
        <translation>Wiedergabelisten</translation>
    </message>
    <message>
        <source>Playlists in which entries would be replaced</source>
        <translation>Wiedergabelisten, in denen Einträge ersetzt würden</translation>
    </message>
    <message>
        <source>Entries</source>
        <translation>Einträge</translation>
    </message>
    <message>
        <source>Entries that would be replaced</source>
        <translation>Einträge, die ersetzt würden</translation>
    </message>
    <message>
        <source>Frees</source>
        <translation>Macht frei</translation>
    </message>
    <message>
        <source>Bytes of the files that would go</source>
        <translation>Bytes der Dateien, die gingen</translation>
    </message>
    <message>
        <source>Plays lost</source>
        <translation>Wiedergaben verloren</translation>
    </message>
    <message>
        <source>Plays of the copies that would go</source>
        <translation>Wiedergaben der Kopien, die gingen</translation>
    </message>
    <message>
        <source>Ratings lost</source>
        <translation>Wertungen verloren</translation>
    </message>
    <message>
        <source>Copies that would go and are rated higher than what stays</source>
        <translation>Kopien, die gingen und besser bewertet sind als das, was bleibt</translation>
    </message>
</context>
<context>
    <name>kestrel::RunBar</name>
    <message>
        <source>What was changed last</source>
        <translation>Was zuletzt geändert wurde</translation>
    </message>
    <message>
        <source>Sho&amp;w History</source>
        <translation>Verlauf &amp;zeigen</translation>
    </message>
    <message>
        <source>✕</source>
        <translation>✕</translation>
    </message>
    <message>
        <source>Hide</source>
        <translation>Ausblenden</translation>
    </message>
    <message>
        <source>Hide what was changed last</source>
        <translation>Was zuletzt geändert wurde, ausblenden</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>Undo what was done</source>
        <translation>Rückgängig machen, was getan wurde</translation>
    </message>
</context>
<context>
    <name>kestrel::RunPage</name>
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
        <source>Undo what was done</source>
        <translation>Rückgängig machen, was getan wurde</translation>
    </message>
    <message>
        <source>What is done by then stays; it can be undone</source>
        <translation>Was bis dahin getan ist, bleibt; es lässt sich rückgängig machen</translation>
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
        <source>Undoing…</source>
        <translation>Wird rückgängig gemacht…</translation>
    </message>
    <message>
        <source>What is back by then stays so; the rest can be undone from the history</source>
        <translation>Was bis dahin zurück ist, bleibt es; der Rest lässt sich aus dem Verlauf rückgängig machen</translation>
    </message>
    <message>
        <source>⚠ The library cannot be changed: %1</source>
        <translation>⚠ Die Bibliothek kann nicht geändert werden: %1</translation>
    </message>
</context>
<context>
    <name>kestrel::ScopeBox</name>
    <message>
        <source>What was searched</source>
        <translation>Was durchsucht wurde</translation>
    </message>
    <message>
        <source>Only “%1” was searched.</source>
        <translation>Durchsucht wurde nur „%1“.</translation>
    </message>
    <message>
        <source>Which groups take part</source>
        <translation>Welche Gruppen dabei sind</translation>
    </message>
</context>
<context>
    <name>kestrel::ScopeNotice</name>
    <message>
        <source>Whole Library</source>
        <translation>Ganze Bibliothek</translation>
    </message>
    <message>
        <source>Look in the whole library again (Ctrl+Shift+M)</source>
        <translation>Wieder in der ganzen Bibliothek suchen (Strg+Umschalt+M)</translation>
    </message>
    <message>
        <source>Only in %1</source>
        <translation>Nur in %1</translation>
    </message>
</context>
<context>
    <name>kestrel::SettingsWindow</name>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>General</source>
        <translation>Allgemein</translation>
    </message>
    <message>
        <source>A &amp;tick marks:</source>
        <translation>Ein &amp;Häkchen bedeutet:</translation>
    </message>
    <message>
        <source>At the &amp;start:</source>
        <translation>Beim &amp;Start:</translation>
    </message>
    <message>
        <source>&amp;Appearance:</source>
        <translation>&amp;Aussehen:</translation>
    </message>
    <message>
        <source>C&amp;olour tracks in the cloud and missing files</source>
        <translation>Titel in der Cloud und fehlende Dateien &amp;färben</translation>
    </message>
    <message>
        <source>the track to keep</source>
        <translation>dieser Titel bleibt</translation>
    </message>
    <message>
        <source>choose a library</source>
        <translation>eine Bibliothek wählen</translation>
    </message>
    <message>
        <source>open the last library</source>
        <translation>die letzte Bibliothek öffnen</translation>
    </message>
    <message>
        <source>open the last library and find duplicates</source>
        <translation>die letzte Bibliothek öffnen und Duplikate finden</translation>
    </message>
    <message>
        <source>like the desktop</source>
        <translation>wie der Desktop</translation>
    </message>
    <message>
        <source>light</source>
        <translation>hell</translation>
    </message>
    <message>
        <source>dark</source>
        <translation>dunkel</translation>
    </message>
    <message>
        <source>This library: %1</source>
        <translation>Diese Bibliothek: %1</translation>
    </message>
    <message>
        <source>&amp;Music folder:</source>
        <translation>&amp;Musikordner:</translation>
    </message>
    <message>
        <source>Music folder</source>
        <translation>Musikordner</translation>
    </message>
    <message>
        <source>where the server does not tell it</source>
        <translation>falls der Server ihn nicht nennt</translation>
    </message>
    <message>
        <source>&amp;Playlists also in:</source>
        <translation>&amp;Wiedergabelisten auch in:</translation>
    </message>
    <message>
        <source>Folder of further playlists</source>
        <translation>Ordner weiterer Wiedergabelisten</translation>
    </message>
    <message>
        <source>no further folder</source>
        <translation>kein weiterer Ordner</translation>
    </message>
    <message>
        <source>Media folder</source>
        <translation>Medienordner</translation>
    </message>
    <message>
        <source>The library names none.</source>
        <translation>Die Bibliothek nennt keinen.</translation>
    </message>
    <message>
        <source>Media folder:</source>
        <translation>Medienordner:</translation>
    </message>
    <message>
        <source>Files elsewhere</source>
        <translation>Dateien an anderem Ort</translation>
    </message>
    <message>
        <source>Files elsewhere:</source>
        <translation>Dateien an anderem Ort:</translation>
    </message>
    <message>
        <source>&amp;Forget These Places</source>
        <translation>Diese Orte &amp;vergessen</translation>
    </message>
    <message>
        <source>Players</source>
        <translation>Player</translation>
    </message>
    <message>
        <source>MPD server</source>
        <translation>MPD-Server</translation>
    </message>
    <message>
        <source>the one on this computer</source>
        <translation>der auf diesem Computer</translation>
    </message>
    <message>
        <source>Co&amp;nnect…</source>
        <translation>Verbin&amp;den…</translation>
    </message>
    <message>
        <source>MPD:</source>
        <translation>MPD:</translation>
    </message>
    <message>
        <source>What is known of audio files</source>
        <translation>Was über Audiodateien bekannt ist</translation>
    </message>
    <message>
        <source>Size of the cache</source>
        <translation>Größe des Zwischenspeichers</translation>
    </message>
    <message>
        <source>C&amp;lear</source>
        <translation>&amp;Leeren</translation>
    </message>
    <message>
        <source>Files are read again when a library with them is opened</source>
        <translation>Dateien werden neu gelesen, wenn eine Bibliothek mit ihnen geöffnet wird</translation>
    </message>
    <message>
        <source>Cache:</source>
        <translation>Zwischenspeicher:</translation>
    </message>
    <message>
        <source>empty</source>
        <translation>leer</translation>
    </message>
    <message>
        <source>Clos&amp;e</source>
        <translation>Schli&amp;eßen</translation>
    </message>
    <message>
        <source>What the rules of order prefer</source>
        <translation>Was die Regeln der Reihenfolge bevorzugen</translation>
    </message>
    <message>
        <source>Folders:</source>
        <translation>Ordner:</translation>
    </message>
    <message>
        <source>Kinds:</source>
        <translation>Arten:</translation>
    </message>
    <message>
        <source>the tracks to remove</source>
        <translation>die Titel, die gehen</translation>
    </message>
</context>
<context>
    <name>kestrel::ShortcutHelp</name>
    <message>
        <source>Keys and Symbols</source>
        <translation>Tasten und Symbole</translation>
    </message>
    <message>
        <source>In the table</source>
        <translation>In der Tabelle</translation>
    </message>
    <message>
        <source>Tick or untick; over several rows, one of each group</source>
        <translation>Häkchen setzen oder entfernen; bei mehreren Zeilen eines je Gruppe</translation>
    </message>
    <message>
        <source>Keep this copy, and no other of its group</source>
        <translation>Diese Kopie behalten, und keine andere der Gruppe</translation>
    </message>
    <message>
        <source>Play this copy, and pause it; a double click does the same</source>
        <translation>Diese Kopie abspielen und anhalten; ein Doppelklick tut dasselbe</translation>
    </message>
    <message>
        <source>Fold and unfold the group</source>
        <translation>Die Gruppe ein- und ausklappen</translation>
    </message>
    <message>
        <source>Stop what is running, or leave the filter</source>
        <translation>Anhalten, was läuft, oder den Filter verlassen</translation>
    </message>
    <message>
        <source>From the filter to the table</source>
        <translation>Vom Filter in die Tabelle</translation>
    </message>
    <message>
        <source>Symbols</source>
        <translation>Symbole</translation>
    </message>
    <message>
        <source>The copy that is kept: in full contrast</source>
        <translation>Die Kopie, die behalten wird: in vollem Kontrast</translation>
    </message>
    <message>
        <source>A copy that is not kept: quieter</source>
        <translation>Eine Kopie, die nicht behalten wird: blasser</translation>
    </message>
    <message>
        <source>In the cloud, without a file here: blue</source>
        <translation>In der Cloud, ohne Datei hier: blau</translation>
    </message>
    <message>
        <source>The file is missing: red</source>
        <translation>Die Datei fehlt: rot</translation>
    </message>
    <message>
        <source>A stream from the net: there is no file to keep</source>
        <translation>Ein Stream aus dem Netz: Es gibt keine Datei</translation>
    </message>
</context>
<context>
    <name>kestrel::Task</name>
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
    <name>kestrel::TickHistory</name>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Wiederholen</translation>
    </message>
</context>
<context>
    <name>kestrel::TopBar</name>
    <message>
        <source>Playlist to search</source>
        <translation>Zu durchsuchende Wiedergabeliste</translation>
    </message>
    <message>
        <source>Look &amp;in</source>
        <translation>Su&amp;chen in</translation>
    </message>
    <message>
        <source>Open a library</source>
        <translation>Bibliothek öffnen</translation>
    </message>
    <message>
        <source>None is open</source>
        <translation>Keine ist geöffnet</translation>
    </message>
</context>
<context>
    <name>kestrel::TrackPlayer</name>
    <message>
        <source>There is no sound device.</source>
        <translation>Es gibt kein Tongerät.</translation>
    </message>
    <message>
        <source>What plays music on this desktop is not installed.</source>
        <translation>Was auf diesem Rechner Musik abspielt, ist nicht installiert.</translation>
    </message>
    <message>
        <source>“%1” cannot be played: its format is not known here.</source>
        <translation>„%1“ lässt sich nicht abspielen: Das Format ist hier unbekannt.</translation>
    </message>
    <message>
        <source>“%1” cannot be played: %2</source>
        <translation>„%1“ lässt sich nicht abspielen: %2</translation>
    </message>
    <message>
        <source>There is no file to play.</source>
        <translation>Es gibt keine Datei zum Abspielen.</translation>
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
        <source>The changes could not be undone.</source>
        <translation>Die Änderungen konnten nicht rückgängig gemacht werden.</translation>
    </message>
    <message>
        <source>Nothing was undone, because it has been changed since.</source>
        <translation>Es wurde nichts rückgängig gemacht, weil es seither geändert wurde.</translation>
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
        <source>Shall Kestrel undo the rest and leave these as they are?</source>
        <translation>Soll Kestrel den Rest rückgängig machen und dies so lassen, wie es ist?</translation>
    </message>
    <message>
        <source>Undo the Rest</source>
        <translation>Rest rückgängig machen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>Undo what this run changed in “%1”?</source>
        <translation>Rückgängig machen, was dieser Durchlauf in „%1“ geändert hat?</translation>
    </message>
    <message>
        <source>Undo everything that this run changed?</source>
        <translation>Alles rückgängig machen, was dieser Durchlauf geändert hat?</translation>
    </message>
    <message>
        <source>Do away with the cause, then undo the run again in the history: it undoes what is left.</source>
        <translation>Beseitigen Sie die Ursache und machen Sie den Durchlauf im Verlauf noch einmal rückgängig: Dann kommt der Rest wieder.</translation>
    </message>
    <message>
        <source>What was changed since stays as it is now. To have it back as it was before the run, change it by hand; the history shows how it was.</source>
        <translation>Was seitdem geändert wurde, bleibt, wie es jetzt ist. Soll es wieder werden wie vor dem Lauf, ändern Sie es von Hand; der Verlauf zeigt, wie es war.</translation>
    </message>
    <message>
        <source>Not All Was Undone</source>
        <translation>Nicht alles wurde rückgängig gemacht</translation>
    </message>
    <message>
        <source>Summary</source>
        <translation>Zusammenfassung</translation>
    </message>
    <message>
        <source>What stays as it is</source>
        <translation>Was bleibt, wie es ist</translation>
    </message>
    <message>
        <source>Because</source>
        <translation>Grund</translation>
    </message>
    <message>
        <source>What was not undone</source>
        <translation>Was nicht rückgängig gemacht wurde</translation>
    </message>
    <message>
        <source>Problem</source>
        <translation>Problem</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>S&amp;chließen</translation>
    </message>
    <message>
        <source>What to do</source>
        <translation>Was zu tun ist</translation>
    </message>
    <message>
        <source>Undo the run again in the history: it undoes what is left.</source>
        <translation>Machen Sie den Durchlauf im Verlauf noch einmal rückgängig: Dann kommt der Rest wieder.</translation>
    </message>
</context>
<context>
    <name>kestrel::WelcomePage</name>
    <message>
        <source>Find the duplicates in your music</source>
        <translation>Finden Sie die Duplikate in Ihrer Musik</translation>
    </message>
    <message>
        <source>Nothing is changed until you say so, and all of it can be undone.</source>
        <translation>Nichts wird geändert, bevor Sie es sagen, und alles lässt sich rückgängig machen.</translation>
    </message>
    <message>
        <source>Open &amp;Folder…</source>
        <translation>&amp;Ordner öffnen…</translation>
    </message>
    <message>
        <source>Open Library D&amp;ocument…</source>
        <translation>&amp;Bibliotheksdokument öffnen…</translation>
    </message>
    <message>
        <source>Connect to &amp;MPD…</source>
        <translation>Mit &amp;MPD verbinden…</translation>
    </message>
    <message>
        <source>Try the Demo Libr&amp;ary</source>
        <translation>Bei&amp;spielbibliothek ausprobieren</translation>
    </message>
    <message>
        <source>FOUND ON THIS COMPUTER</source>
        <translation>AUF DIESEM COMPUTER GEFUNDEN</translation>
    </message>
    <message>
        <source>Looking…</source>
        <translation>Wird gesucht…</translation>
    </message>
    <message>
        <source>Nothing in the usual places. Open a folder, or drag a folder or a document here.</source>
        <translation>Nichts an den üblichen Orten. Öffnen Sie einen Ordner, oder ziehen Sie einen Ordner oder ein Dokument hierher.</translation>
    </message>
    <message>
        <source>RECENT</source>
        <translation>ZULETZT GEÖFFNET</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Finds the duplicate songs of a music library.</source>
        <translation>Findet die doppelten Titel einer Musikbibliothek.</translation>
    </message>
    <message>
        <source>The library to open: a document, a folder of audio files, or an address</source>
        <translation>Die Bibliothek, die geöffnet wird: ein Dokument, ein Ordner mit Audiodateien oder eine Adresse</translation>
    </message>
    <message>
        <source>Does not open the last library at the start.</source>
        <translation>Öffnet die letzte Bibliothek beim Start nicht.</translation>
    </message>
    <message>
        <source>Writes the log to standard error, too.</source>
        <translation>Schreibt das Protokoll auch in die Standardfehlerausgabe.</translation>
    </message>
</context>
</TS>
