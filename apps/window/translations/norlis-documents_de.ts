<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>Norlis::Window::AboutDialog</name>
    <message>
        <source>About Documents</source>
        <translation>Über Dokumente</translation>
    </message>
    <message>
        <source>Documents</source>
        <translation>Dokumente</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>Made with:</source>
        <translation>Erstellt mit:</translation>
    </message>
</context>
<context>
    <name>Norlis::Window::ChangesCommands</name>
    <message>
        <source>“%1” was changed both here and in the cloud.</source>
        <translation>„%1“ wurde hier und in der Cloud geändert.</translation>
    </message>
    <message>
        <source>&amp;Keep Both</source>
        <translation>&amp;Beide behalten</translation>
    </message>
    <message>
        <source>Yours becomes a new document, with this computer and the date in its name.</source>
        <translation>Ihre Fassung wird ein neues Dokument, mit diesem Computer und dem Datum im Namen.</translation>
    </message>
    <message>
        <source>Use &amp;Mine</source>
        <translation>&amp;Meine verwenden</translation>
    </message>
    <message>
        <source>The version in the cloud is lost.</source>
        <translation>Die Fassung in der Cloud geht verloren.</translation>
    </message>
    <message>
        <source>Use the C&amp;loud’s</source>
        <translation>&amp;Die der Cloud verwenden</translation>
    </message>
    <message>
        <source>The version on this computer is lost.</source>
        <translation>Die Fassung auf diesem Computer geht verloren.</translation>
    </message>
    <message>
        <source>“%1” has changes on this computer that are not in the cloud.</source>
        <translation>„%1“ hat auf diesem Computer Änderungen, die nicht in der Cloud sind.</translation>
    </message>
    <message>
        <source>&amp;Upload Changes</source>
        <translation>Ä&amp;nderungen hochladen</translation>
    </message>
    <message>
        <source>The document in the cloud gets them.</source>
        <translation>Das Dokument in der Cloud erhält sie.</translation>
    </message>
    <message>
        <source>The changes on this computer are lost.</source>
        <translation>Die Änderungen auf diesem Computer gehen verloren.</translation>
    </message>
</context>
<context>
    <name>Norlis::Window::CloudSituation</name>
    <message>
        <source>Sign In…</source>
        <translation>Anmelden …</translation>
    </message>
    <message>
        <source>You have been signed out.</source>
        <translation>Sie wurden abgemeldet.</translation>
    </message>
    <message>
        <source>Try Again</source>
        <translation>Erneut versuchen</translation>
    </message>
    <message>
        <source>%1 of the %2 documents are gone from the list.</source>
        <translation>%1 der %2 Dokumente stehen nicht mehr in der Liste.</translation>
    </message>
    <message>
        <source>If nobody removed them, check the cloud. Their local copies are remembered for a month.</source>
        <translation>Wenn niemand sie entfernt hat, prüfen Sie die Cloud. Zu welchen Dateien hier sie gehören, bleibt einen Monat lang bekannt.</translation>
    </message>
</context>
<context>
    <name>Norlis::Window::DetailsPane</name>
    <message>
        <source>Details</source>
        <translation>Details</translation>
    </message>
    <message>
        <source>In the cloud</source>
        <translation>In der Cloud</translation>
    </message>
    <message>
        <source>On this computer</source>
        <translation>Auf diesem Computer</translation>
    </message>
    <message>
        <source>Select a document to see its details.</source>
        <translation>Wählen Sie ein Dokument aus, um Details zu sehen.</translation>
    </message>
    <message numerus="yes">
        <source>%n documents</source>
        <translation>
            <numerusform>%n Dokument</numerusform>
            <numerusform>%n Dokumente</numerusform>
        </translation>
    </message>
    <message>
        <source>Folder: %1</source>
        <translation>Ordner: %1</translation>
    </message>
</context>
<context>
    <name>Norlis::Window::DocumentActions</name>
    <message>
        <source>&amp;Download</source>
        <translation>Herunter&amp;laden</translation>
    </message>
    <message>
        <source>&amp;Open</source>
        <translation>Ö&amp;ffnen</translation>
    </message>
    <message>
        <source>Upload &amp;Changes</source>
        <translation>Ä&amp;nderungen hochladen</translation>
    </message>
    <message>
        <source>Remove the selected documents from the cloud</source>
        <translation>Die ausgewählten Dokumente aus der Cloud entfernen</translation>
    </message>
    <message>
        <source>&amp;Refresh</source>
        <translation>A&amp;ktualisieren</translation>
    </message>
    <message>
        <source>&amp;Thumbnails</source>
        <translation>&amp;Vorschaubilder</translation>
    </message>
    <message>
        <source>&amp;List</source>
        <translation>&amp;Liste</translation>
    </message>
    <message>
        <source>&amp;Find</source>
        <translation>&amp;Suchen</translation>
    </message>
    <message>
        <source>&amp;Documents</source>
        <translation>&amp;Dokumente</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>Si&amp;gn Out</source>
        <translation>Ab&amp;melden</translation>
    </message>
    <message>
        <source>&amp;Upload…</source>
        <translation>&amp;Hochladen …</translation>
    </message>
    <message>
        <source>Upload PDF files to the cloud</source>
        <translation>PDF-Dateien in die Cloud hochladen</translation>
    </message>
    <message>
        <source>Download the selected documents to the downloads folder</source>
        <translation>Die ausgewählten Dokumente in den Download-Ordner herunterladen</translation>
    </message>
    <message>
        <source>Download &amp;To…</source>
        <translation>Herunterladen n&amp;ach …</translation>
    </message>
    <message>
        <source>Download the selected documents to a folder of your choice</source>
        <translation>Die ausgewählten Dokumente in einen Ordner Ihrer Wahl herunterladen</translation>
    </message>
    <message>
        <source>Open the selected documents, downloading them first if necessary</source>
        <translation>Die ausgewählten Dokumente öffnen und bei Bedarf vorher herunterladen</translation>
    </message>
    <message>
        <source>Update the documents in the cloud with the changes you made on this computer</source>
        <translation>Die Dokumente in der Cloud mit Ihren Änderungen auf diesem Computer aktualisieren</translation>
    </message>
    <message>
        <source>Reload the list of documents</source>
        <translation>Die Dokumentliste neu laden</translation>
    </message>
    <message>
        <source>Show documents as thumbnails</source>
        <translation>Dokumente als Vorschaubilder anzeigen</translation>
    </message>
    <message>
        <source>Show documents as a list</source>
        <translation>Dokumente als Liste anzeigen</translation>
    </message>
    <message>
        <source>Find documents by name</source>
        <translation>Dokumente nach Namen suchen</translation>
    </message>
    <message>
        <source>Forget the password and choose another cloud</source>
        <translation>Das Passwort löschen und eine andere Cloud wählen</translation>
    </message>
    <message>
        <source>U&amp;ndo Removal</source>
        <translation>Entfernen &amp;rückgängig machen</translation>
    </message>
    <message>
        <source>Take back the last removal</source>
        <translation>Das letzte Entfernen zurücknehmen</translation>
    </message>
    <message>
        <source>Cop&amp;y</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>Copy the selected documents to the clipboard, downloading them first if necessary</source>
        <translation>Die ausgewählten Dokumente in die Zwischenablage kopieren und sie vorher herunterladen, falls nötig</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>E&amp;infügen</translation>
    </message>
    <message>
        <source>Upload the PDF files on the clipboard</source>
        <translation>Die PDF-Dateien in der Zwischenablage hochladen</translation>
    </message>
    <message>
        <source>Resolve Con&amp;flict…</source>
        <translation>K&amp;onflikt lösen …</translation>
    </message>
    <message>
        <source>Choose what becomes of documents that were changed both here and in the cloud</source>
        <translation>Entscheiden, was aus Dokumenten wird, die hier und in der Cloud geändert wurden</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>&amp;Entfernen</translation>
    </message>
    <message>
        <source>Sho&amp;w in Folder</source>
        <translation>Im Ordner &amp;zeigen</translation>
    </message>
    <message>
        <source>Show the copies on this computer in the file manager</source>
        <translation>Die Kopien auf diesem Computer in der Dateiverwaltung zeigen</translation>
    </message>
    <message>
        <source>Use the Cloud’s &amp;Version…</source>
        <translation>&amp;Version der Cloud verwenden …</translation>
    </message>
    <message>
        <source>Give up the changes you made on this computer</source>
        <translation>Die Änderungen auf diesem Computer aufgeben</translation>
    </message>
    <message>
        <source>Zoom &amp;In</source>
        <translation>Ver&amp;größern</translation>
    </message>
    <message>
        <source>Show larger thumbnails</source>
        <translation>Größere Vorschaubilder zeigen</translation>
    </message>
    <message>
        <source>Zoom &amp;Out</source>
        <translation>Verkle&amp;inern</translation>
    </message>
    <message>
        <source>Show smaller thumbnails</source>
        <translation>Kleinere Vorschaubilder zeigen</translation>
    </message>
    <message>
        <source>&amp;Usual Size</source>
        <translation>&amp;Normale Größe</translation>
    </message>
    <message>
        <source>Show thumbnails of the usual size</source>
        <translation>Vorschaubilder in normaler Größe zeigen</translation>
    </message>
    <message>
        <source>&amp;Sort By</source>
        <translation>S&amp;ortieren nach</translation>
    </message>
    <message>
        <source>&amp;Quick Look</source>
        <translation>S&amp;chnellansicht</translation>
    </message>
    <message>
        <source>Look at the pages of the selected document</source>
        <translation>Die Seiten des ausgewählten Dokuments ansehen</translation>
    </message>
    <message>
        <source>&amp;Details</source>
        <translation>&amp;Details</translation>
    </message>
    <message>
        <source>Show or hide what is known of the selected documents</source>
        <translation>Zeigen oder verbergen, was über die ausgewählten Dokumente bekannt ist</translation>
    </message>
</context>
<context>
    <name>Norlis::Window::DocumentCommands</name>
    <message>
        <source>“%1” cannot be opened.</source>
        <translation>„%1“ kann nicht geöffnet werden.</translation>
    </message>
    <message>
        <source>“%1” was not removed.</source>
        <translation>„%1“ wurde nicht entfernt.</translation>
    </message>
    <message>
        <source>It has changed in the cloud since you were asked.</source>
        <translation>Es hat sich in der Cloud geändert, seit Sie gefragt wurden.</translation>
    </message>
    <message>
        <source>“%1” was removed.</source>
        <translation>„%1“ wurde entfernt.</translation>
    </message>
    <message numerus="yes">
        <source>%n documents were removed.</source>
        <translation>
            <numerusform>%n Dokument wurde entfernt.</numerusform>
            <numerusform>%n Dokumente wurden entfernt.</numerusform>
        </translation>
    </message>
    <message>
        <source>A newer version of “%1” was fetched.</source>
        <translation>Eine neuere Version von „%1“ wurde geholt.</translation>
    </message>
    <message>
        <source>Open the Older One</source>
        <translation>Die ältere öffnen</translation>
    </message>
    <message>
        <source>No program for opening PDF documents was found.</source>
        <translation>Es wurde kein Programm zum Öffnen von PDF-Dokumenten gefunden.</translation>
    </message>
    <message>
        <source>Show in Folder</source>
        <translation>Im Ordner zeigen</translation>
    </message>
</context>
<context>
    <name>Norlis::Window::DocumentsOrder</name>
    <message>
        <source>&amp;Name, A to Z</source>
        <translation>&amp;Name, A bis Z</translation>
    </message>
    <message>
        <source>Name, &amp;Z to A</source>
        <translation>Name, &amp;Z bis A</translation>
    </message>
    <message>
        <source>Ne&amp;west First</source>
        <translation>Neu&amp;este zuerst</translation>
    </message>
    <message>
        <source>&amp;Oldest First</source>
        <translation>Älte&amp;ste zuerst</translation>
    </message>
    <message>
        <source>&amp;Largest First</source>
        <translation>&amp;Größte zuerst</translation>
    </message>
    <message>
        <source>&amp;Smallest First</source>
        <translation>&amp;Kleinste zuerst</translation>
    </message>
    <message>
        <source>&amp;Folder, A to Z</source>
        <translation>&amp;Ordner, A bis Z</translation>
    </message>
    <message>
        <source>Fol&amp;der, Z to A</source>
        <translation>O&amp;rdner, Z bis A</translation>
    </message>
    <message>
        <source>State, &amp;Conflicts First</source>
        <translation>Zustand, Kon&amp;flikte zuerst</translation>
    </message>
    <message>
        <source>State, Conflicts L&amp;ast</source>
        <translation>Zustand, Konflikte zu&amp;letzt</translation>
    </message>
    <message>
        <source>Sort order</source>
        <translation>Sortierung</translation>
    </message>
</context>
<context>
    <name>Norlis::Window::DocumentsPage</name>
    <message>
        <source>No documents yet</source>
        <translation>Noch keine Dokumente</translation>
    </message>
    <message>
        <source>No matching documents</source>
        <translation>Keine passenden Dokumente</translation>
    </message>
    <message>
        <source>Loading documents…</source>
        <translation>Dokumente werden geladen …</translation>
    </message>
    <message>
        <source>Drop PDF files here, or choose files to upload.</source>
        <translation>Ziehen Sie PDF-Dateien hierher, oder wählen Sie Dateien zum Hochladen aus.</translation>
    </message>
    <message>
        <source>Upload…</source>
        <translation>Hochladen …</translation>
    </message>
    <message>
        <source>Show All Documents</source>
        <translation>Alle Dokumente zeigen</translation>
    </message>
    <message>
        <source>What was uploaded does not match what is searched for.</source>
        <translation>Was hochgeladen wurde, passt nicht zu dem, was gesucht wird.</translation>
    </message>
    <message>
        <source>Show All</source>
        <translation>Alle zeigen</translation>
    </message>
    <message>
        <source>The removal is being sent to the cloud.</source>
        <translation>Das Entfernen wird an die Cloud gesendet.</translation>
    </message>
    <message>
        <source>Then the window closes.</source>
        <translation>Danach schließt sich das Fenster.</translation>
    </message>
</context>
<context>
    <name>Norlis::Window::DocumentsTools</name>
    <message>
        <source>Toolbar</source>
        <translation>Symbolleiste</translation>
    </message>
</context>
<context>
    <name>Norlis::Window::DocumentsView</name>
    <message>
        <source>Documents</source>
        <translation>Dokumente</translation>
    </message>
</context>
<context>
    <name>Norlis::Window::DownloadCommands</name>
    <message>
        <source>Download To</source>
        <translation>Herunterladen nach</translation>
    </message>
    <message>
        <source>There is another file “%1” in %2 already.</source>
        <translation>In %2 gibt es schon eine andere Datei „%1“.</translation>
    </message>
    <message>
        <source>&amp;Keep Both</source>
        <translation>&amp;Beide behalten</translation>
    </message>
    <message>
        <source>The document gets a number in its name here.</source>
        <translation>Das Dokument erhält hier eine Nummer im Namen.</translation>
    </message>
    <message>
        <source>&amp;Replace</source>
        <translation>&amp;Ersetzen</translation>
    </message>
    <message>
        <source>&amp;Other Folder…</source>
        <translation>An&amp;derer Ordner …</translation>
    </message>
    <message>
        <source>You choose where the document is saved.</source>
        <translation>Sie wählen, wo das Dokument gespeichert wird.</translation>
    </message>
    <message>
        <source>“%1” was not downloaded.</source>
        <translation>„%1“ wurde nicht heruntergeladen.</translation>
    </message>
    <message>
        <source>The file that is there is kept under another name.</source>
        <translation>Die Datei, die dort ist, bleibt unter einem anderen Namen.</translation>
    </message>
    <message>
        <source>What is there already cannot be given another name.</source>
        <translation>Was dort schon ist, kann keinen anderen Namen erhalten.</translation>
    </message>
    <message>
        <source>Your file “%1” is now called “%2”.</source>
        <translation>Ihre Datei „%1“ heißt nun „%2“.</translation>
    </message>
    <message>
        <source>“%1” is up to date here.</source>
        <translation>„%1“ ist hier aktuell.</translation>
    </message>
    <message numerus="yes">
        <source>%n documents are up to date here.</source>
        <translation>
            <numerusform>%n Dokument ist hier aktuell.</numerusform>
            <numerusform>%n Dokumente sind hier aktuell.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Norlis::Window::DropHint</name>
    <message>
        <source>Drop to upload the documents in the folder</source>
        <translation>Loslassen, um die Dokumente im Ordner hochzuladen</translation>
    </message>
    <message numerus="yes">
        <source>Drop to upload %n document(s)</source>
        <translation>
            <numerusform>Loslassen, um %n Dokument hochzuladen</numerusform>
            <numerusform>Loslassen, um %n Dokumente hochzuladen</numerusform>
        </translation>
    </message>
    <message>
        <source>Only PDF documents can be uploaded</source>
        <translation>Nur PDF-Dokumente können hochgeladen werden</translation>
    </message>
</context>
<context>
    <name>Norlis::Window::FilterChips</name>
    <message>
        <source>Shown documents</source>
        <translation>Gezeigte Dokumente</translation>
    </message>
    <message>
        <source>Documents without a copy on this computer</source>
        <translation>Dokumente ohne Kopie auf diesem Computer</translation>
    </message>
    <message>
        <source>Documents that were changed here or in the cloud since both were the same</source>
        <translation>Dokumente, die hier oder in der Cloud geändert wurden, seit beide gleich waren</translation>
    </message>
    <message>
        <source>Documents that were changed both here and in the cloud</source>
        <translation>Dokumente, die sowohl hier als auch in der Cloud geändert wurden</translation>
    </message>
    <message>
        <source>Only documents without a copy on this computer are shown.</source>
        <translation>Es werden nur Dokumente ohne Kopie auf diesem Computer gezeigt.</translation>
    </message>
    <message>
        <source>Only changed documents are shown.</source>
        <translation>Es werden nur geänderte Dokumente gezeigt.</translation>
    </message>
    <message>
        <source>Only documents that were changed both here and in the cloud are shown.</source>
        <translation>Es werden nur Dokumente gezeigt, die sowohl hier als auch in der Cloud geändert wurden.</translation>
    </message>
    <message>
        <source>All</source>
        <translation>Alle</translation>
    </message>
    <message>
        <source>Not Here</source>
        <translation>Nicht hier</translation>
    </message>
    <message>
        <source>Changed</source>
        <translation>Geändert</translation>
    </message>
    <message>
        <source>Conflicts</source>
        <translation>Konflikte</translation>
    </message>
</context>
<context>
    <name>Norlis::Window::FolderField</name>
    <message>
        <source>Choose a Folder</source>
        <translation>Ordner wählen</translation>
    </message>
    <message>
        <source>Choose a folder: %1</source>
        <translation>Ordner wählen: %1</translation>
    </message>
</context>
<context>
    <name>Norlis::Window::ListHeader</name>
    <message>
        <source>Columns</source>
        <translation>Spalten</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Zustand</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Modified</source>
        <translation>Geändert am</translation>
    </message>
</context>
<context>
    <name>Norlis::Window::MainWindow</name>
    <message>
        <source>Documents</source>
        <translation>Dokumente</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>The documents cannot be shown.</source>
        <translation>Die Dokumente können nicht angezeigt werden.</translation>
    </message>
    <message>
        <source>Documents — %1</source>
        <translation>Dokumente — %1</translation>
    </message>
    <message>
        <source>Sign Out</source>
        <translation>Abmelden</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>&amp;Application</source>
        <translation>An&amp;wendung</translation>
    </message>
    <message>
        <source>The password could not be saved.</source>
        <translation>Das Passwort konnte nicht gespeichert werden.</translation>
    </message>
    <message>
        <source>The settings could not be saved.</source>
        <translation>Die Einstellungen konnten nicht gespeichert werden.</translation>
    </message>
    <message>
        <source>They are canceled and do not go on later. The files on this computer and the documents in the cloud stay as they are.</source>
        <translation>Sie werden abgebrochen und später nicht fortgesetzt. Die Dateien auf diesem Computer und die Dokumente in der Cloud bleiben, wie sie sind.</translation>
    </message>
    <message>
        <source>No password or token was given.</source>
        <translation>Es wurde kein Passwort oder Token angegeben.</translation>
    </message>
    <message numerus="yes">
        <source>%n document(s) have changes that are not in the cloud. Sign out anyway?</source>
        <translation>
            <numerusform>%n Dokument hat Änderungen, die nicht in der Cloud sind. Trotzdem abmelden?</numerusform>
            <numerusform>%n Dokumente haben Änderungen, die nicht in der Cloud sind. Trotzdem abmelden?</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;Settings…</source>
        <translation>&amp;Einstellungen …</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>&amp;Keyboard Shortcuts</source>
        <translation>&amp;Tastenkürzel</translation>
    </message>
    <message>
        <source>&amp;About Documents</source>
        <translation>Ü&amp;ber Dokumente</translation>
    </message>
    <message>
        <source>The changes stay in the files on this computer.</source>
        <translation>Die Änderungen bleiben in den Dateien auf diesem Computer.</translation>
    </message>
    <message>
        <source>Transfers have not ended. Sign out anyway?</source>
        <translation>Übertragungen sind noch nicht beendet. Trotzdem abmelden?</translation>
    </message>
    <message>
        <source>Not uploaded yet: %1</source>
        <translation>Noch nicht hochgeladen: %1</translation>
    </message>
    <message>
        <source>Transfers have not ended. Quit anyway?</source>
        <translation>Übertragungen sind noch nicht beendet. Trotzdem beenden?</translation>
    </message>
    <message>
        <source>Not removed from the cloud: %1</source>
        <translation>Nicht aus der Cloud entfernt: %1</translation>
    </message>
    <message>
        <source>The documents stay there, and are in the list at the next start.</source>
        <translation>Die Dokumente bleiben dort und stehen beim nächsten Start wieder in der Liste.</translation>
    </message>
    <message>
        <source>Stay</source>
        <translation>Bleiben</translation>
    </message>
    <message>
        <source>Removals could not be sent. Sign out anyway?</source>
        <translation>Dokumente konnten nicht entfernt werden. Trotzdem abmelden?</translation>
    </message>
    <message>
        <source>Removals could not be sent. Quit anyway?</source>
        <translation>Dokumente konnten nicht entfernt werden. Trotzdem beenden?</translation>
    </message>
    <message>
        <source>Quit Anyway</source>
        <translation>Trotzdem beenden</translation>
    </message>
</context>
<context>
    <name>Norlis::Window::MessageBar</name>
    <message>
        <source>Message</source>
        <translation>Meldung</translation>
    </message>
    <message>
        <source>Close the message</source>
        <translation>Meldung schließen</translation>
    </message>
    <message>
        <source>Details</source>
        <translation>Details</translation>
    </message>
    <message>
        <source>Show the next message</source>
        <translation>Die nächste Meldung zeigen</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
</context>
<context>
    <name>Norlis::Window::Narrowing</name>
    <message>
        <source>You searched for “%1”.</source>
        <translation>Sie haben nach „%1“ gesucht.</translation>
    </message>
</context>
<context>
    <name>Norlis::Window::Notifications</name>
    <message>
        <source>Show</source>
        <translation>Anzeigen</translation>
    </message>
</context>
<context>
    <name>Norlis::Window::Questions</name>
    <message>
        <source>Remove “%1” from the cloud?</source>
        <translation>„%1“ aus der Cloud entfernen?</translation>
    </message>
    <message numerus="yes">
        <source>Remove %n documents from the cloud?</source>
        <translation>
            <numerusform>%n Dokument aus der Cloud entfernen?</numerusform>
            <numerusform>%n Dokumente aus der Cloud entfernen?</numerusform>
        </translation>
    </message>
    <message>
        <source>Use the Cloud’s</source>
        <translation>Die der Cloud verwenden</translation>
    </message>
    <message>
        <source>Upload “%1”?</source>
        <translation>„%1“ hochladen?</translation>
    </message>
    <message numerus="yes">
        <source>Upload %n files?</source>
        <translation>
            <numerusform>%n Datei hochladen?</numerusform>
            <numerusform>%n Dateien hochladen?</numerusform>
        </translation>
    </message>
    <message>
        <source>Copies on this computer are kept. For half a minute, Undo takes it back.</source>
        <translation>Kopien auf diesem Computer bleiben. Eine halbe Minute lang lässt es sich rückgängig machen.</translation>
    </message>
    <message numerus="yes">
        <source>Open %n documents?</source>
        <translation>
            <numerusform>%n Dokument öffnen?</numerusform>
            <numerusform>%n Dokumente öffnen?</numerusform>
        </translation>
    </message>
    <message>
        <source>Use the cloud’s version of “%1”?</source>
        <translation>Die Version der Cloud von „%1“ verwenden?</translation>
    </message>
    <message numerus="yes">
        <source>Use the cloud’s versions of %n documents?</source>
        <translation>
            <numerusform>Die Version der Cloud von %n Dokument verwenden?</numerusform>
            <numerusform>Die Versionen der Cloud von %n Dokumenten verwenden?</numerusform>
        </translation>
    </message>
    <message>
        <source>The changes on this computer are lost.</source>
        <translation>Die Änderungen auf diesem Computer gehen verloren.</translation>
    </message>
    <message>
        <source>&amp;Upload</source>
        <translation>&amp;Hochladen</translation>
    </message>
    <message>
        <source>&amp;Open</source>
        <translation>Ö&amp;ffnen</translation>
    </message>
    <message numerus="yes">
        <source>%n document(s) have changes that are not in the cloud. These will be in the files on this computer only.</source>
        <translation>
            <numerusform>%n Dokument hat Änderungen, die nicht in der Cloud sind. Sie stehen dann nur noch in der Datei auf diesem Computer.</numerusform>
            <numerusform>%n Dokumente haben Änderungen, die nicht in der Cloud sind. Sie stehen dann nur noch in den Dateien auf diesem Computer.</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>&amp;Entfernen</translation>
    </message>
    <message>
        <source>Documents</source>
        <translation>Dokumente</translation>
    </message>
</context>
<context>
    <name>Norlis::Window::QuickLook</name>
    <message>
        <source>Previous Page</source>
        <translation>Vorherige Seite</translation>
    </message>
    <message>
        <source>Next Page</source>
        <translation>Nächste Seite</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>Herunterladen</translation>
    </message>
    <message>
        <source>Previous Document</source>
        <translation>Vorheriges Dokument</translation>
    </message>
    <message>
        <source>Next Document</source>
        <translation>Nächstes Dokument</translation>
    </message>
    <message>
        <source>Open the document</source>
        <translation>Das Dokument öffnen</translation>
    </message>
    <message>
        <source>Close Quick Look</source>
        <translation>Schnellansicht schließen</translation>
    </message>
    <message>
        <source>Quick look: %1, %2</source>
        <translation>Schnellansicht: %1, %2</translation>
    </message>
    <message>
        <source>Downloading… %1 %</source>
        <translation>Wird heruntergeladen … %1 %</translation>
    </message>
    <message>
        <source>To show the pages after the first one, the document has to be downloaded.</source>
        <translation>Um weitere Seiten als die erste zu zeigen, muss das Dokument heruntergeladen werden.</translation>
    </message>
    <message>
        <source>The page cannot be shown: %1.</source>
        <translation>Die Seite kann nicht gezeigt werden: %1.</translation>
    </message>
    <message>
        <source>Page %1 of %2</source>
        <translation>Seite %1 von %2</translation>
    </message>
    <message>
        <source>Page %1</source>
        <translation>Seite %1</translation>
    </message>
    <message>
        <source>Zoom Out</source>
        <translation>Verkleinern</translation>
    </message>
    <message>
        <source>Zoom In</source>
        <translation>Vergrößern</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>Whole Page</source>
        <translation>Ganze Seite</translation>
    </message>
    <message>
        <source>The cloud cannot be reached at the moment.</source>
        <translation>Die Cloud ist im Augenblick nicht erreichbar.</translation>
    </message>
    <message>
        <source>Loading…</source>
        <translation>Wird geladen …</translation>
    </message>
    <message>
        <source>Open the Document</source>
        <translation>Dokument öffnen</translation>
    </message>
    <message>
        <source>Next or Previous Document, Over a Large Page</source>
        <translation>Nächstes oder voriges Dokument, über eine große Seite</translation>
    </message>
</context>
<context>
    <name>Norlis::Window::RemovalUndo</name>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message numerus="yes">
        <source>It is too late to undo: %n document(s) had already been removed.</source>
        <translation>
            <numerusform>Dafür ist es zu spät: %n Dokument war schon entfernt.</numerusform>
            <numerusform>Dafür ist es zu spät: %n Dokumente waren schon entfernt.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Norlis::Window::SearchField</name>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Search by name</source>
        <translation>Nach Namen suchen</translation>
    </message>
    <message>
        <source>Clear Search</source>
        <translation>Suche löschen</translation>
    </message>
</context>
<context>
    <name>Norlis::Window::SettingsDialog</name>
    <message>
        <source>Downloads</source>
        <translation>Downloads</translation>
    </message>
    <message>
        <source>Opened documents</source>
        <translation>Geöffnete Dokumente</translation>
    </message>
    <message>
        <source>A private folder that is tidied up</source>
        <translation>Ein privater Ordner, der aufgeräumt wird</translation>
    </message>
    <message>
        <source>&amp;Upload the changes of an opened document whenever it is saved</source>
        <translation>Änderungen eines geöffneten Dokuments beim Speichern &amp;hochladen</translation>
    </message>
    <message>
        <source>&amp;Tell on the desktop when transfers have ended</source>
        <translation>Auf dem Desktop &amp;melden, wenn Übertragungen beendet sind</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Look for changes in the cloud</source>
        <translation>Nach Änderungen in der Cloud sehen</translation>
    </message>
    <message>
        <source>Only when asked</source>
        <translation>Nur auf Wunsch</translation>
    </message>
    <message>
        <source>Every </source>
        <translation>Alle </translation>
    </message>
    <message>
        <source> min</source>
        <translation> min</translation>
    </message>
    <message>
        <source>If they took longer than</source>
        <translation>Wenn sie länger dauerten als</translation>
    </message>
    <message>
        <source> s</source>
        <translation> s</translation>
    </message>
    <message>
        <source>&amp;Downloads:</source>
        <translation>&amp;Downloads:</translation>
    </message>
    <message>
        <source>&amp;Opened documents:</source>
        <translation>&amp;Geöffnete Dokumente:</translation>
    </message>
    <message>
        <source>&amp;Look for changes in the cloud:</source>
        <translation>&amp;Nach Änderungen in der Cloud sehen:</translation>
    </message>
    <message>
        <source>&amp;If they took longer than:</source>
        <translation>&amp;Wenn sie länger dauerten als:</translation>
    </message>
    <message>
        <source>Choose a folder for downloads.</source>
        <translation>Wählen Sie einen Ordner für Downloads.</translation>
    </message>
    <message>
        <source>Files cannot be put into “%1”. Choose another folder.</source>
        <translation>In „%1“ können keine Dateien abgelegt werden. Wählen Sie einen anderen Ordner.</translation>
    </message>
</context>
<context>
    <name>Norlis::Window::ShortcutsDialog</name>
    <message>
        <source>Keyboard Shortcuts</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>In the quick look</source>
        <translation>In der Schnellansicht</translation>
    </message>
</context>
<context>
    <name>Norlis::Window::StatusLine</name>
    <message>
        <source>Try Now</source>
        <translation>Jetzt versuchen</translation>
    </message>
    <message>
        <source>Connect to the cloud now</source>
        <translation>Jetzt mit der Cloud verbinden</translation>
    </message>
    <message numerus="yes">
        <source>%n document(s)</source>
        <translation>
            <numerusform>%n Dokument</numerusform>
            <numerusform>%n Dokumente</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 of %n document(s)</source>
        <translation>
            <numerusform>%1 von %n Dokument</numerusform>
            <numerusform>%1 von %n Dokumenten</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n selected, %1</source>
        <translation>
            <numerusform>%n ausgewählt, %1</numerusform>
            <numerusform>%n ausgewählt, %1</numerusform>
        </translation>
    </message>
    <message>
        <source>refreshing…</source>
        <translation>wird aktualisiert …</translation>
    </message>
    <message>
        <source>signing in…</source>
        <translation>Anmeldung läuft …</translation>
    </message>
    <message>
        <source>as of %1</source>
        <translation>Stand %1</translation>
    </message>
    <message>
        <source>Offline</source>
        <translation>Offline</translation>
    </message>
    <message>
        <source>list of %1</source>
        <translation>Liste von %1</translation>
    </message>
    <message numerus="yes">
        <source>trying again in %n s</source>
        <translation>
            <numerusform>neuer Versuch in %n s</numerusform>
            <numerusform>neuer Versuch in %n s</numerusform>
        </translation>
    </message>
    <message>
        <source>trying again…</source>
        <translation>neuer Versuch läuft …</translation>
    </message>
    <message>
        <source>Stop Waiting</source>
        <translation>Nicht mehr warten</translation>
    </message>
    <message>
        <source>Work offline until the cloud answers again</source>
        <translation>Offline arbeiten, bis die Cloud wieder antwortet</translation>
    </message>
    <message numerus="yes">
        <source>The cloud has not answered for %n s</source>
        <translation>
            <numerusform>Die Cloud antwortet seit %n s nicht</numerusform>
            <numerusform>Die Cloud antwortet seit %n s nicht</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n removal(s) waiting</source>
        <translation>
            <numerusform>Noch %n zu entfernen</numerusform>
            <numerusform>Noch %n zu entfernen</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Norlis::Window::StorageBar</name>
    <message>
        <source>Storage used</source>
        <translation>Belegter Speicher</translation>
    </message>
</context>
<context>
    <name>Norlis::Window::TransferDelegate</name>
    <message>
        <source>Finished</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>Waiting for the cloud</source>
        <translation>Wartet auf die Cloud</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Try Again</source>
        <translation>Erneut versuchen</translation>
    </message>
    <message>
        <source>Start Again</source>
        <translation>Neu starten</translation>
    </message>
    <message>
        <source>Choose…</source>
        <translation>Auswählen …</translation>
    </message>
    <message>
        <source>Waiting for its turn</source>
        <translation>Wartet, bis es an der Reihe ist</translation>
    </message>
    <message>
        <source>Canceled</source>
        <translation>Abgebrochen</translation>
    </message>
</context>
<context>
    <name>Norlis::Window::TransferNotice</name>
    <message numerus="yes">
        <source>%n failed</source>
        <translation>
            <numerusform>%n fehlgeschlagen</numerusform>
            <numerusform>%n fehlgeschlagen</numerusform>
        </translation>
    </message>
    <message>
        <source>Some transfers have failed</source>
        <translation>Einige Übertragungen sind fehlgeschlagen</translation>
    </message>
    <message>
        <source>All transfers have finished</source>
        <translation>Alle Übertragungen sind abgeschlossen</translation>
    </message>
</context>
<context>
    <name>Norlis::Window::Transfers</name>
    <message>
        <source>failed</source>
        <translation>fehlgeschlagen</translation>
    </message>
    <message>
        <source>finished</source>
        <translation>fertig</translation>
    </message>
    <message>
        <source>Download of %1: %2</source>
        <translation>Herunterladen von %1: %2</translation>
    </message>
    <message>
        <source>Upload of %1: %2</source>
        <translation>Hochladen von %1: %2</translation>
    </message>
    <message>
        <source>Saved in %1</source>
        <translation>Gespeichert in %1</translation>
    </message>
    <message>
        <source>%1%</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>waiting for the cloud</source>
        <translation>wartet auf die Cloud</translation>
    </message>
    <message numerus="yes">
        <source>%n document(s) uploaded</source>
        <translation>
            <numerusform>%n Dokument hochgeladen</numerusform>
            <numerusform>%n Dokumente hochgeladen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n document(s) downloaded</source>
        <translation>
            <numerusform>%n Dokument heruntergeladen</numerusform>
            <numerusform>%n Dokumente heruntergeladen</numerusform>
        </translation>
    </message>
    <message>
        <source>canceled</source>
        <translation>abgebrochen</translation>
    </message>
    <message>
        <source>waiting for its turn</source>
        <translation>wartet, bis es an der Reihe ist</translation>
    </message>
    <message>
        <source>Ready to be looked at</source>
        <translation>Bereit zum Ansehen</translation>
    </message>
    <message>
        <source>In the cloud as “%1”</source>
        <translation>In der Cloud als „%1“</translation>
    </message>
    <message>
        <source>In the cloud</source>
        <translation>In der Cloud</translation>
    </message>
    <message numerus="yes">
        <source>no progress for %n s</source>
        <translation>
            <numerusform>kein Fortschritt seit %n s</numerusform>
            <numerusform>kein Fortschritt seit %n s</numerusform>
        </translation>
    </message>
    <message>
        <source>starting…</source>
        <translation>beginnt …</translation>
    </message>
</context>
<context>
    <name>Norlis::Window::TransfersPanel</name>
    <message>
        <source>Transfers</source>
        <translation>Übertragungen</translation>
    </message>
    <message numerus="yes">
        <source>%n failed</source>
        <translation>
            <numerusform>%n fehlgeschlagen</numerusform>
            <numerusform>%n fehlgeschlagen</numerusform>
        </translation>
    </message>
    <message>
        <source>Press Delete to cancel the selected transfers, Return to begin failed and canceled ones again</source>
        <translation>Entf bricht die ausgewählten Übertragungen ab, die Eingabetaste beginnt fehlgeschlagene und abgebrochene von neuem</translation>
    </message>
    <message>
        <source>Remove the transfers that have ended from the list</source>
        <translation>Beendete Übertragungen aus der Liste entfernen</translation>
    </message>
    <message>
        <source>Show each transfer</source>
        <translation>Jede Übertragung zeigen</translation>
    </message>
    <message numerus="yes">
        <source>%n waiting for the cloud</source>
        <translation>
            <numerusform>%n wartet auf die Cloud</numerusform>
            <numerusform>%n warten auf die Cloud</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n canceled</source>
        <translation>
            <numerusform>%n abgebrochen</numerusform>
            <numerusform>%n abgebrochen</numerusform>
        </translation>
    </message>
    <message>
        <source>D&amp;etails</source>
        <translation>De&amp;tails</translation>
    </message>
    <message>
        <source>&amp;Cancel All</source>
        <translation>Alle ab&amp;brechen</translation>
    </message>
    <message>
        <source>&amp;Try Again</source>
        <translation>&amp;Erneut versuchen</translation>
    </message>
    <message>
        <source>C&amp;lear</source>
        <translation>&amp;Leeren</translation>
    </message>
    <message>
        <source>&amp;Cancel Selected</source>
        <translation>Ausgewählte ab&amp;brechen</translation>
    </message>
</context>
<context>
    <name>Norlis::Window::UnsentChanges</name>
    <message>
        <source>“%1” was changed.</source>
        <translation>„%1“ wurde geändert.</translation>
    </message>
    <message numerus="yes">
        <source>%n documents have changes that are not in the cloud.</source>
        <translation>
            <numerusform>%n Dokument hat Änderungen, die nicht in der Cloud sind.</numerusform>
            <numerusform>%n Dokumente haben Änderungen, die nicht in der Cloud sind.</numerusform>
        </translation>
    </message>
    <message>
        <source>Resolve…</source>
        <translation>Lösen …</translation>
    </message>
    <message>
        <source>Upload Changes</source>
        <translation>Änderungen hochladen</translation>
    </message>
    <message>
        <source>“%1” is no longer in the cloud.</source>
        <translation>„%1“ ist nicht mehr in der Cloud.</translation>
    </message>
    <message>
        <source>Your changes to it are in the file %1.</source>
        <translation>Ihre Änderungen stehen in der Datei %1.</translation>
    </message>
    <message>
        <source>Upload as New</source>
        <translation>Als neu hochladen</translation>
    </message>
    <message numerus="yes">
        <source>%n documents with changes of yours are no longer in the cloud.</source>
        <translation>
            <numerusform>%n Dokument mit Ihren Änderungen ist nicht mehr in der Cloud.</numerusform>
            <numerusform>%n Dokumente mit Ihren Änderungen sind nicht mehr in der Cloud.</numerusform>
        </translation>
    </message>
    <message>
        <source>Your changes are in the files %1.</source>
        <translation>Ihre Änderungen sind in den Dateien %1.</translation>
    </message>
    <message>
        <source>Do Not Tell Again</source>
        <translation>Nicht mehr melden</translation>
    </message>
    <message>
        <source>“%1” was changed both here and in the cloud.</source>
        <translation>„%1“ wurde hier und in der Cloud geändert.</translation>
    </message>
    <message numerus="yes">
        <source>%n of them was (were) changed in the cloud, too.</source>
        <translation>
            <numerusform>%n davon wurde auch in der Cloud geändert.</numerusform>
            <numerusform>%n davon wurden auch in der Cloud geändert.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Norlis::Window::UploadCommands</name>
    <message>
        <source>Upload PDF Documents</source>
        <translation>PDF-Dokumente hochladen</translation>
    </message>
    <message>
        <source>PDF documents (*.pdf *.PDF)</source>
        <translation>PDF-Dokumente (*.pdf *.PDF)</translation>
    </message>
    <message>
        <source>There are no files on the clipboard.</source>
        <translation>In der Zwischenablage sind keine Dateien.</translation>
    </message>
    <message>
        <source>There is no file %1.</source>
        <translation>Die Datei %1 gibt es nicht.</translation>
    </message>
    <message>
        <source>“%1” is not a PDF document and was not uploaded.</source>
        <translation>„%1“ ist kein PDF-Dokument und wurde nicht hochgeladen.</translation>
    </message>
    <message numerus="yes">
        <source>%n of the files are not PDF documents and were not uploaded.</source>
        <translation>
            <numerusform>%n der Dateien ist kein PDF-Dokument und wurde nicht hochgeladen.</numerusform>
            <numerusform>%n der Dateien sind keine PDF-Dokumente und wurden nicht hochgeladen.</numerusform>
        </translation>
    </message>
    <message>
        <source>There are no PDF documents in the folder.</source>
        <translation>In dem Ordner sind keine PDF-Dokumente.</translation>
    </message>
    <message numerus="yes">
        <source>There are more than %n PDF documents in the folder.</source>
        <translation>
            <numerusform>In dem Ordner ist mehr als %n PDF-Dokument.</numerusform>
            <numerusform>In dem Ordner sind mehr als %n PDF-Dokumente.</numerusform>
        </translation>
    </message>
    <message>
        <source>Nothing was uploaded. Choose a folder with fewer.</source>
        <translation>Es wurde nichts hochgeladen. Wählen Sie einen Ordner mit weniger Dokumenten.</translation>
    </message>
    <message>
        <source>There is a document “%1” in the cloud already.</source>
        <translation>In der Cloud gibt es schon ein Dokument „%1“.</translation>
    </message>
    <message>
        <source>&amp;Keep Both</source>
        <translation>&amp;Beide behalten</translation>
    </message>
    <message>
        <source>Yours gets a number in its name.</source>
        <translation>Ihre Datei erhält eine Nummer im Namen.</translation>
    </message>
    <message>
        <source>&amp;Replace</source>
        <translation>&amp;Ersetzen</translation>
    </message>
    <message>
        <source>The version in the cloud is lost.</source>
        <translation>Die Fassung in der Cloud geht verloren.</translation>
    </message>
</context>
<context>
    <name>Norlis::Window::VersionsDialog</name>
    <message>
        <source>%1 (newer)</source>
        <translation>%1 (neuer)</translation>
    </message>
    <message>
        <source>On this computer</source>
        <translation>Auf diesem Computer</translation>
    </message>
    <message>
        <source>In the cloud</source>
        <translation>In der Cloud</translation>
    </message>
    <message>
        <source>&amp;Skip</source>
        <translation>Über&amp;springen</translation>
    </message>
    <message>
        <source>It has changed again since you were asked.</source>
        <translation>Inzwischen hat es sich noch einmal geändert.</translation>
    </message>
    <message>
        <source>Here: %1</source>
        <translation>Hier: %1</translation>
    </message>
    <message>
        <source>In the cloud: %1</source>
        <translation>In der Cloud: %1</translation>
    </message>
    <message numerus="yes">
        <source>Do the same for the %n other(s)</source>
        <translation>
            <numerusform>Für das andere ebenso</numerusform>
            <numerusform>Für die %n anderen ebenso</numerusform>
        </translation>
    </message>
    <message>
        <source>Documents</source>
        <translation>Dokumente</translation>
    </message>
</context>
<context>
    <name>Norlis::Window::WelcomePage</name>
    <message>
        <source>Use This Folder</source>
        <translation>Diesen Ordner verwenden</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>Anmelden</translation>
    </message>
    <message>
        <source>Where are your documents?</source>
        <translation>Wo sind Ihre Dokumente?</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Signing in</source>
        <translation>Anmeldung</translation>
    </message>
    <message>
        <source>Cloud Documents</source>
        <translation>Cloud-Dokumente</translation>
    </message>
    <message>
        <source>In a folder</source>
        <translation>In einem Ordner</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>Choose a folder</source>
        <translation>Ordner auswählen</translation>
    </message>
    <message>
        <source>On a WebDAV server</source>
        <translation>Auf einem WebDAV-Server</translation>
    </message>
    <message>
        <source>&amp;User name:</source>
        <translation>&amp;Benutzername:</translation>
    </message>
    <message>
        <source>&amp;Password or token:</source>
        <translation>&amp;Passwort oder Token:</translation>
    </message>
    <message>
        <source>&amp;Certificate file:</source>
        <translation>&amp;Zertifikatsdatei:</translation>
    </message>
    <message>
        <source>Choose a certificate file</source>
        <translation>Zertifikatsdatei auswählen</translation>
    </message>
    <message>
        <source>Certificate file</source>
        <translation>Zertifikatsdatei</translation>
    </message>
    <message>
        <source>Certificates (*.pem *.crt);;All files (*)</source>
        <translation>Zertifikate (*.pem *.crt);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Something is missing.</source>
        <translation>Es fehlt noch etwas.</translation>
    </message>
    <message>
        <source>This is the address of a folder.</source>
        <translation>Das ist die Adresse eines Ordners.</translation>
    </message>
    <message>
        <source>This address cannot be used.</source>
        <translation>Diese Adresse kann nicht verwendet werden.</translation>
    </message>
    <message>
        <source>Only needed for private or self-signed certificates</source>
        <translation>Nur für private Zertifikate nötig</translation>
    </message>
    <message>
        <source>This program manages the PDF documents that you keep in the cloud: it uploads and downloads them and shows which ones have changed. The cloud can be any folder or a WebDAV server.</source>
        <translation>Dieses Programm verwaltet die PDF-Dokumente, die Sie in der Cloud haben: Es lädt sie hoch und herunter und zeigt, welche sich geändert haben. Die Cloud kann ein beliebiger Ordner oder ein WebDAV-Server sein.</translation>
    </message>
    <message>
        <source>Signing in…</source>
        <translation>Anmeldung läuft …</translation>
    </message>
    <message>
        <source>Choose…</source>
        <translation>Auswählen …</translation>
    </message>
    <message>
        <source>This is not a folder.</source>
        <translation>Das ist kein Ordner.</translation>
    </message>
    <message>
        <source>Choose a folder, or enter its full path.</source>
        <translation>Wählen Sie einen Ordner aus, oder geben Sie den vollständigen Pfad ein.</translation>
    </message>
    <message>
        <source>There is a file with that name. Choose a folder.</source>
        <translation>Es gibt eine Datei mit diesem Namen. Wählen Sie einen Ordner aus.</translation>
    </message>
    <message>
        <source>The folder could not be created.</source>
        <translation>Der Ordner konnte nicht angelegt werden.</translation>
    </message>
    <message>
        <source>Check that you are allowed to write to its parent folder.</source>
        <translation>Prüfen Sie, ob Sie in den übergeordneten Ordner schreiben dürfen.</translation>
    </message>
    <message>
        <source>Enter it under “In a folder” above.</source>
        <translation>Geben Sie sie oben unter „In einem Ordner“ ein.</translation>
    </message>
    <message>
        <source>Enter the address of the server.</source>
        <translation>Geben Sie die Adresse des Servers ein.</translation>
    </message>
    <message>
        <source>Add&amp;ress:</source>
        <translation>A&amp;dresse:</translation>
    </message>
    <message>
        <source>This can be a folder that another program synchronizes, a folder on a network drive, or a new one. If it does not exist, it will be created.</source>
        <translation>Das kann ein Ordner sein, den ein anderes Programm synchronisiert, einer auf einem Netzlaufwerk oder ein neuer. Fehlt der Ordner, wird er angelegt.</translation>
    </message>
    <message>
        <source>There is no folder %1.</source>
        <translation>Den Ordner %1 gibt es nicht.</translation>
    </message>
    <message>
        <source>Check the path, or create that folder first.</source>
        <translation>Prüfen Sie den Pfad, oder legen Sie diesen Ordner zuerst an.</translation>
    </message>
</context>
<context>
    <name>ServiceTexts</name>
    <message>
        <source>The server cannot be reached</source>
        <translation>Der Server ist nicht erreichbar</translation>
    </message>
    <message>
        <source>no address is known for its name</source>
        <translation>zu seinem Namen ist keine Adresse bekannt</translation>
    </message>
    <message>
        <source>it does not accept connections, or no network leads there</source>
        <translation>er nimmt keine Verbindungen an, oder kein Netz führt dorthin</translation>
    </message>
    <message>
        <source>it does not answer</source>
        <translation>er antwortet nicht</translation>
    </message>
    <message>
        <source>no secure connection could be established</source>
        <translation>es kam keine sichere Verbindung zustande</translation>
    </message>
    <message>
        <source>the answer is not HTTP</source>
        <translation>die Antwort ist kein HTTP</translation>
    </message>
    <message>
        <source>The server&apos;s identity cannot be verified</source>
        <translation>Die Identität des Servers lässt sich nicht prüfen</translation>
    </message>
    <message>
        <source>its certificate has expired</source>
        <translation>sein Zertifikat ist abgelaufen</translation>
    </message>
    <message>
        <source>its certificate is not valid yet, or the clock of this computer is wrong</source>
        <translation>sein Zertifikat gilt noch nicht, oder die Uhr dieses Computers geht falsch</translation>
    </message>
    <message>
        <source>its certificate comes from an authority that this computer does not know</source>
        <translation>sein Zertifikat stammt von einer Stelle, die dieser Computer nicht kennt</translation>
    </message>
    <message>
        <source>its certificate is that of another server</source>
        <translation>sein Zertifikat ist das eines anderen Servers</translation>
    </message>
    <message>
        <source>its certificate is not accepted</source>
        <translation>sein Zertifikat wird nicht anerkannt</translation>
    </message>
    <message>
        <source>the certificate file cannot be read</source>
        <translation>die Zertifikatsdatei kann nicht gelesen werden</translation>
    </message>
    <message>
        <source>The connection broke</source>
        <translation>Die Verbindung ist abgebrochen</translation>
    </message>
    <message>
        <source>The server has stopped answering</source>
        <translation>Der Server antwortet nicht mehr</translation>
    </message>
    <message>
        <source>The server does not accept the user name or the password</source>
        <translation>Der Server nimmt den Benutzernamen oder das Passwort nicht an</translation>
    </message>
    <message>
        <source>The server asks for a user name and a password</source>
        <translation>Der Server verlangt einen Benutzernamen und ein Passwort</translation>
    </message>
    <message>
        <source>The server asks for a token</source>
        <translation>Der Server verlangt ein Token</translation>
    </message>
    <message>
        <source>The server does not allow it</source>
        <translation>Der Server erlaubt es nicht</translation>
    </message>
    <message>
        <source>There is nothing at that address</source>
        <translation>Unter dieser Adresse ist nichts</translation>
    </message>
    <message>
        <source>There is no folder at that address</source>
        <translation>Unter dieser Adresse ist kein Ordner</translation>
    </message>
    <message>
        <source>The server cannot do this at that address</source>
        <translation>Der Server kann das unter dieser Adresse nicht</translation>
    </message>
    <message>
        <source>The server cannot do this</source>
        <translation>Der Server kann das nicht</translation>
    </message>
    <message>
        <source>What is at that address does not speak WebDAV</source>
        <translation>Was unter dieser Adresse ist, versteht kein WebDAV</translation>
    </message>
    <message>
        <source>The address is that of a document, not of a folder</source>
        <translation>Die Adresse ist die eines Dokuments, nicht die eines Ordners</translation>
    </message>
    <message>
        <source>The document is larger than the server accepts</source>
        <translation>Das Dokument ist größer, als der Server annimmt</translation>
    </message>
    <message>
        <source>The document is locked by somebody</source>
        <translation>Das Dokument ist von jemandem gesperrt</translation>
    </message>
    <message>
        <source>The document is no longer in the cloud</source>
        <translation>Das Dokument ist nicht mehr in der Cloud</translation>
    </message>
    <message>
        <source>The document in the cloud has changed since you last saw it</source>
        <translation>Das Dokument in der Cloud hat sich geändert, seit Sie es zuletzt gesehen haben</translation>
    </message>
    <message>
        <source>The server has failed</source>
        <translation>Der Server hat einen Fehler</translation>
    </message>
    <message>
        <source>The server has no room left</source>
        <translation>Der Server hat keinen Platz mehr</translation>
    </message>
    <message>
        <source>The server is not available at the moment, perhaps for maintenance</source>
        <translation>Der Server ist zurzeit nicht verfügbar, vielleicht wegen Wartung</translation>
    </message>
    <message>
        <source>The server has received too many requests</source>
        <translation>Der Server hat zu viele Anfragen erhalten</translation>
    </message>
    <message>
        <source>There is no such file</source>
        <translation>Es gibt keine solche Datei</translation>
    </message>
    <message>
        <source>Check the network and the address of the service, and try again.</source>
        <translation>Prüfen Sie das Netz und die Adresse des Dienstes und versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>Check the address of the service.</source>
        <translation>Prüfen Sie die Adresse des Dienstes.</translation>
    </message>
    <message>
        <source>Check that the address is that of a WebDAV server.</source>
        <translation>Prüfen Sie, ob die Adresse die eines WebDAV-Servers ist.</translation>
    </message>
    <message>
        <source>Check that the address is that of a folder on a WebDAV server.</source>
        <translation>Prüfen Sie, ob die Adresse die eines Ordners auf einem WebDAV-Server ist.</translation>
    </message>
    <message>
        <source>Do not enter a password there unless you know why. If the server&apos;s certificate comes from an authority of your own, specify its file when you sign in.</source>
        <translation>Geben Sie dort kein Passwort ein, wenn Sie nicht wissen, warum. Stammt das Zertifikat des Servers von einer eigenen Stelle, geben Sie deren Datei beim Anmelden an.</translation>
    </message>
    <message>
        <source>Sign in again.</source>
        <translation>Melden Sie sich noch einmal an.</translation>
    </message>
    <message>
        <source>Sign in with both.</source>
        <translation>Melden Sie sich mit beidem an.</translation>
    </message>
    <message>
        <source>Sign in with a token, and leave out the user name.</source>
        <translation>Melden Sie sich mit einem Token an, ohne Benutzernamen.</translation>
    </message>
    <message>
        <source>Ask whoever runs the server for permission.</source>
        <translation>Bitten Sie den Betreiber des Servers um Erlaubnis.</translation>
    </message>
    <message>
        <source>Ask whoever runs the server to raise its limit.</source>
        <translation>Bitten Sie den Betreiber des Servers, die Grenze zu erhöhen.</translation>
    </message>
    <message>
        <source>Refresh the list.</source>
        <translation>Aktualisieren Sie die Liste.</translation>
    </message>
    <message>
        <source>Refresh the list and try again.</source>
        <translation>Aktualisieren Sie die Liste und versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>Try again.</source>
        <translation>Versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>Try again later.</source>
        <translation>Versuchen Sie es später noch einmal.</translation>
    </message>
    <message>
        <source>Try again in a few minutes.</source>
        <translation>Versuchen Sie es in einigen Minuten noch einmal.</translation>
    </message>
    <message>
        <source>Free some space in the cloud and try again.</source>
        <translation>Schaffen Sie Platz in der Cloud und versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>Free some space on the drive and try again.</source>
        <translation>Schaffen Sie Platz auf dem Laufwerk und versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>Check the name, or whether the file was moved.</source>
        <translation>Prüfen Sie den Namen, oder ob die Datei verschoben wurde.</translation>
    </message>
    <message>
        <source>There is no such page</source>
        <translation>Diese Seite gibt es nicht</translation>
    </message>
    <message>
        <source>It is protected by a password</source>
        <translation>Es ist durch ein Passwort geschützt</translation>
    </message>
    <message>
        <source>It is encrypted in a way that cannot be read</source>
        <translation>Es ist auf eine Weise verschlüsselt, die nicht gelesen werden kann</translation>
    </message>
    <message>
        <source>It is not a PDF document, or is damaged</source>
        <translation>Es ist kein PDF-Dokument oder ist beschädigt</translation>
    </message>
    <message>
        <source>It has no page that can be shown</source>
        <translation>Es hat keine Seite, die gezeigt werden kann</translation>
    </message>
    <message>
        <source>Check the address: without encryption it begins with http://.</source>
        <translation>Prüfen Sie die Adresse: Ohne Verschlüsselung beginnt sie mit http://.</translation>
    </message>
    <message>
        <source>The server gave no final answer</source>
        <translation>Der Server hat keine endgültige Antwort gegeben</translation>
    </message>
    <message>
        <source>The server answered before it had the whole document</source>
        <translation>Der Server hat geantwortet, bevor er das ganze Dokument hatte</translation>
    </message>
    <message>
        <source>The server answered before it had the whole file</source>
        <translation>Der Server hat geantwortet, bevor er die ganze Datei hatte</translation>
    </message>
    <message>
        <source>The answer of the server does not end</source>
        <translation>Die Antwort des Servers nimmt kein Ende</translation>
    </message>
    <message>
        <source>The server redirects without saying where</source>
        <translation>Der Server leitet um, ohne zu sagen, wohin</translation>
    </message>
    <message>
        <source>The server redirects to a page instead of answering</source>
        <translation>Der Server leitet zu einer Seite um, statt zu antworten</translation>
    </message>
    <message>
        <source>not a web address</source>
        <translation>keine Webadresse</translation>
    </message>
    <message>
        <source>The server redirects to something else</source>
        <translation>Der Server leitet zu etwas anderem um</translation>
    </message>
    <message>
        <source>The server redirects in circles</source>
        <translation>Der Server leitet im Kreis um</translation>
    </message>
    <message>
        <source>The answer is not a WebDAV listing</source>
        <translation>Die Antwort ist keine WebDAV-Liste</translation>
    </message>
    <message>
        <source>The listing is cut off</source>
        <translation>Die Liste ist abgeschnitten</translation>
    </message>
    <message>
        <source>The listing is damaged</source>
        <translation>Die Liste ist beschädigt</translation>
    </message>
    <message>
        <source>The listing is for another folder</source>
        <translation>Die Liste ist die eines anderen Ordners</translation>
    </message>
    <message>
        <source>The listing is nested too deeply</source>
        <translation>Die Liste ist zu tief verschachtelt</translation>
    </message>
    <message>
        <source>The listing is too long</source>
        <translation>Die Liste ist zu lang</translation>
    </message>
    <message>
        <source>The name is longer than the server accepts</source>
        <translation>Der Name ist länger, als der Server annimmt</translation>
    </message>
    <message>
        <source>The server does not accept documents of this kind</source>
        <translation>Der Server nimmt Dokumente dieser Art nicht an</translation>
    </message>
    <message>
        <source>The document is still being processed by the server</source>
        <translation>Das Dokument wird vom Server noch verarbeitet</translation>
    </message>
    <message>
        <source>The document has been changed by somebody else in the meantime</source>
        <translation>Das Dokument wurde inzwischen von jemand anderem geändert</translation>
    </message>
    <message>
        <source>The folder to write to is not on the server</source>
        <translation>Der Ordner, in den geschrieben werden soll, ist nicht auf dem Server</translation>
    </message>
    <message>
        <source>The server behind the gateway does not answer correctly</source>
        <translation>Der Server hinter dem Gateway antwortet nicht richtig</translation>
    </message>
    <message>
        <source>The server behind the gateway does not answer in time</source>
        <translation>Der Server hinter dem Gateway antwortet nicht rechtzeitig</translation>
    </message>
    <message>
        <source>The server does not understand the request</source>
        <translation>Der Server versteht die Anfrage nicht</translation>
    </message>
    <message>
        <source>The server answered in a way that was not expected</source>
        <translation>Der Server hat auf eine Weise geantwortet, die nicht erwartet wurde</translation>
    </message>
    <message>
        <source>The server asks for a sign-in, but does not say in which form</source>
        <translation>Der Server verlangt eine Anmeldung, sagt aber nicht, in welcher Form</translation>
    </message>
    <message>
        <source>The server does not answer as a WebDAV server does</source>
        <translation>Der Server antwortet nicht wie ein WebDAV-Server</translation>
    </message>
    <message>
        <source>That is not a password or token</source>
        <translation>Das ist kein Passwort und kein Token</translation>
    </message>
    <message>
        <source>Nobody is signed in</source>
        <translation>Niemand ist angemeldet</translation>
    </message>
    <message>
        <source>Nobody is signed in to the cloud</source>
        <translation>Niemand ist bei der Cloud angemeldet</translation>
    </message>
    <message>
        <source>The server sends a web page instead of the document</source>
        <translation>Der Server sendet eine Webseite statt des Dokuments</translation>
    </message>
    <message>
        <source>The server sends another part of the document than the requested one</source>
        <translation>Der Server sendet einen anderen Teil des Dokuments als den verlangten</translation>
    </message>
    <message>
        <source>The server sent something other than the document</source>
        <translation>Der Server hat etwas anderes als das Dokument gesendet</translation>
    </message>
    <message>
        <source>The server does not report the size of the document</source>
        <translation>Der Server gibt die Größe des Dokuments nicht an</translation>
    </message>
    <message>
        <source>The document that arrived does not have the hash that the server gives for it</source>
        <translation>Das Dokument, das angekommen ist, hat nicht die Prüfsumme, die der Server dafür angibt</translation>
    </message>
    <message>
        <source>The server received other bytes than were sent</source>
        <translation>Der Server hat andere Bytes empfangen, als gesendet wurden</translation>
    </message>
    <message>
        <source>The server stored other bytes than were sent</source>
        <translation>Der Server hat andere Bytes gespeichert, als gesendet wurden</translation>
    </message>
    <message>
        <source>The server takes the name for that of another document</source>
        <translation>Der Server hält den Namen für den eines anderen Dokuments</translation>
    </message>
    <message>
        <source>The server says that it has given the file its name, but has not</source>
        <translation>Der Server sagt, er habe der Datei ihren Namen gegeben, hat es aber nicht getan</translation>
    </message>
    <message>
        <source>What has that name in the cloud now is not what was sent</source>
        <translation>Was in der Cloud jetzt diesen Namen hat, ist nicht das, was gesendet wurde</translation>
    </message>
    <message>
        <source>What was sent is not under that name in the cloud</source>
        <translation>Was gesendet wurde, ist in der Cloud nicht unter diesem Namen</translation>
    </message>
    <message>
        <source>There are too many documents of that name</source>
        <translation>Es gibt zu viele Dokumente mit diesem Namen</translation>
    </message>
    <message>
        <source>There is still a document of that name in the cloud</source>
        <translation>In der Cloud ist immer noch ein Dokument mit diesem Namen</translation>
    </message>
    <message>
        <source>The document to replace is no longer in the cloud</source>
        <translation>Das Dokument, das ersetzt werden soll, ist nicht mehr in der Cloud</translation>
    </message>
    <message>
        <source>Somebody has changed or removed the document in the cloud since</source>
        <translation>Jemand hat das Dokument in der Cloud seitdem geändert oder entfernt</translation>
    </message>
    <message>
        <source>Somebody else is changing the document at this moment: it is locked</source>
        <translation>Jemand anderes ändert das Dokument gerade: es ist gesperrt</translation>
    </message>
    <message>
        <source>The service did not report the id of the document</source>
        <translation>Der Dienst hat die Kennung des Dokuments nicht angegeben</translation>
    </message>
    <message>
        <source>The file could not be read</source>
        <translation>Die Datei konnte nicht gelesen werden</translation>
    </message>
    <message>
        <source>you do not have permission to read the file</source>
        <translation>Sie dürfen die Datei nicht lesen</translation>
    </message>
    <message>
        <source>no file was given</source>
        <translation>es wurde keine Datei angegeben</translation>
    </message>
    <message>
        <source>It is a folder</source>
        <translation>Es ist ein Ordner</translation>
    </message>
    <message>
        <source>It is not a file</source>
        <translation>Es ist keine Datei</translation>
    </message>
    <message>
        <source>It is not a regular file</source>
        <translation>Es ist keine gewöhnliche Datei</translation>
    </message>
    <message>
        <source>It is empty</source>
        <translation>Es ist leer</translation>
    </message>
    <message>
        <source>It cannot be read</source>
        <translation>Es kann nicht gelesen werden</translation>
    </message>
    <message>
        <source>It has changed in the meantime</source>
        <translation>Es hat sich inzwischen geändert</translation>
    </message>
    <message>
        <source>It has changed in the cloud since you removed it</source>
        <translation>Es hat sich in der Cloud geändert, seit Sie es entfernt haben</translation>
    </message>
    <message>
        <source>It has no local copy</source>
        <translation>Es hat keine lokale Kopie</translation>
    </message>
    <message>
        <source>It is already being downloaded</source>
        <translation>Es wird schon heruntergeladen</translation>
    </message>
    <message>
        <source>It is already being uploaded</source>
        <translation>Es wird schon hochgeladen</translation>
    </message>
    <message>
        <source>It is not in the list of documents</source>
        <translation>Es ist nicht in der Liste der Dokumente</translation>
    </message>
    <message>
        <source>It is no longer in the list of documents</source>
        <translation>Es ist nicht mehr in der Liste der Dokumente</translation>
    </message>
    <message>
        <source>It is no longer the local copy of a document in the list</source>
        <translation>Es ist nicht mehr die lokale Kopie eines Dokuments der Liste</translation>
    </message>
    <message>
        <source>The list of documents is not up to date</source>
        <translation>Die Liste der Dokumente ist nicht aktuell</translation>
    </message>
    <message>
        <source>The document is no longer in the list</source>
        <translation>Das Dokument ist nicht mehr in der Liste</translation>
    </message>
    <message>
        <source>The document was not uploaded</source>
        <translation>Das Dokument wurde nicht hochgeladen</translation>
    </message>
    <message>
        <source>The document was not downloaded</source>
        <translation>Das Dokument wurde nicht heruntergeladen</translation>
    </message>
    <message>
        <source>The document was not removed</source>
        <translation>Das Dokument wurde nicht entfernt</translation>
    </message>
    <message>
        <source>its name in the cloud is not valid as a file name</source>
        <translation>sein Name in der Cloud taugt nicht als Dateiname</translation>
    </message>
    <message>
        <source>the folder cannot be written to</source>
        <translation>in den Ordner kann nicht geschrieben werden</translation>
    </message>
    <message>
        <source>the folder already contains something else with this name</source>
        <translation>im Ordner ist schon etwas anderes mit diesem Namen</translation>
    </message>
    <message>
        <source>another folder has taken the place of the one for the download</source>
        <translation>an der Stelle des Ordners für das Herunterladen ist jetzt ein anderer</translation>
    </message>
    <message>
        <source>the local copy has changes that are not in the cloud</source>
        <translation>die lokale Kopie hat Änderungen, die nicht in der Cloud sind</translation>
    </message>
    <message>
        <source>the downloaded file could not be read</source>
        <translation>die heruntergeladene Datei konnte nicht gelesen werden</translation>
    </message>
    <message>
        <source>the downloaded file does not match the list of documents</source>
        <translation>die heruntergeladene Datei passt nicht zur Liste der Dokumente</translation>
    </message>
    <message>
        <source>it could not be moved into the folder</source>
        <translation>es konnte nicht in den Ordner verschoben werden</translation>
    </message>
    <message>
        <source>Another program is changing documents of the folder</source>
        <translation>Ein anderes Programm ändert gerade Dokumente des Ordners</translation>
    </message>
    <message>
        <source>The folder does not show the document</source>
        <translation>Der Ordner zeigt das Dokument nicht</translation>
    </message>
    <message>
        <source>The folder does not show the change</source>
        <translation>Der Ordner zeigt die Änderung nicht</translation>
    </message>
    <message>
        <source>is empty</source>
        <translation>ist leer</translation>
    </message>
    <message>
        <source>refers to a folder</source>
        <translation>steht für einen Ordner</translation>
    </message>
    <message>
        <source>contains a path separator</source>
        <translation>enthält ein Trennzeichen für Pfade</translation>
    </message>
    <message>
        <source>contains a control character</source>
        <translation>enthält ein Steuerzeichen</translation>
    </message>
    <message>
        <source>is a device name on some systems</source>
        <translation>ist auf manchen Systemen der Name eines Geräts</translation>
    </message>
    <message>
        <source>is one that is kept for unfinished files</source>
        <translation>ist unfertigen Dateien vorbehalten</translation>
    </message>
    <message>
        <source>Only PDF documents have previews</source>
        <translation>Nur PDF-Dokumente haben eine Vorschau</translation>
    </message>
    <message>
        <source>The document is too large to be downloaded for a preview</source>
        <translation>Das Dokument ist zu groß, um für eine Vorschau heruntergeladen zu werden</translation>
    </message>
    <message>
        <source>Too much of the document would have to be downloaded for a preview</source>
        <translation>Für eine Vorschau müsste zu viel des Dokuments heruntergeladen werden</translation>
    </message>
    <message>
        <source>The document has changed meanwhile</source>
        <translation>Das Dokument hat sich inzwischen geändert</translation>
    </message>
    <message>
        <source>Too many previews have been requested at once</source>
        <translation>Es wurden zu viele Vorschaubilder auf einmal verlangt</translation>
    </message>
    <message>
        <source>The requested size is empty</source>
        <translation>Die verlangte Größe ist leer</translation>
    </message>
    <message>
        <source>The preview was not fetched</source>
        <translation>Die Vorschau wurde nicht geholt</translation>
    </message>
    <message>
        <source>The page cannot be shown</source>
        <translation>Die Seite kann nicht gezeigt werden</translation>
    </message>
    <message>
        <source>Documents are not opened, because this kernel cannot filter system calls</source>
        <translation>Dokumente werden nicht geöffnet, weil dieser Kernel Systemaufrufe nicht filtern kann</translation>
    </message>
    <message>
        <source>The document crashed the preview renderer</source>
        <translation>Das Dokument hat das Vorschauprogramm zum Absturz gebracht</translation>
    </message>
    <message>
        <source>The preview renderer is not installed</source>
        <translation>Das Vorschauprogramm ist nicht installiert</translation>
    </message>
    <message>
        <source>The preview renderer cannot be started</source>
        <translation>Das Vorschauprogramm kann nicht gestartet werden</translation>
    </message>
    <message>
        <source>The preview renderer answered with something other than a picture</source>
        <translation>Das Vorschauprogramm hat mit etwas anderem als einem Bild geantwortet</translation>
    </message>
    <message>
        <source>The preview renderer asked for something other than the document</source>
        <translation>Das Vorschauprogramm hat etwas anderes als das Dokument verlangt</translation>
    </message>
    <message>
        <source>The address is not valid</source>
        <translation>Die Adresse ist ungültig</translation>
    </message>
    <message>
        <source>The address begins with two schemes</source>
        <translation>Die Adresse beginnt mit zwei Schemata</translation>
    </message>
    <message>
        <source>Leave the password out of the address; you will be asked for it</source>
        <translation>Lassen Sie das Passwort in der Adresse weg; Sie werden danach gefragt</translation>
    </message>
    <message>
        <source>The address of a service ends with its path. Write &quot;?&quot; as %3F and &quot;#&quot; as %23</source>
        <translation>Die Adresse eines Dienstes endet mit ihrem Pfad. Schreiben Sie „?“ als %3F und „#“ als %23</translation>
    </message>
    <message>
        <source>A user name cannot contain colons or control characters</source>
        <translation>Ein Benutzername kann keine Doppelpunkte und keine Steuerzeichen enthalten</translation>
    </message>
    <message>
        <source>The address is that of a folder on another machine. Give the path where it is mounted on this one</source>
        <translation>Die Adresse ist die eines Ordners auf einem anderen Rechner. Geben Sie den Pfad an, unter dem er auf diesem eingehängt ist</translation>
    </message>
    <message>
        <source>The path of a folder cannot contain null characters</source>
        <translation>Der Pfad eines Ordners kann keine Nullzeichen enthalten</translation>
    </message>
    <message>
        <source>The address has no server name; it should look like https://user@host/path/</source>
        <translation>Die Adresse hat keinen Servernamen; sie soll aussehen wie https://user@host/path/</translation>
    </message>
    <message>
        <source>The address and --user specify different users</source>
        <translation>Die Adresse und --user geben verschiedene Benutzer an</translation>
    </message>
    <message>
        <source>There is no address. Give the path of a folder, or the address of a WebDAV server</source>
        <translation>Es gibt keine Adresse. Geben Sie den Pfad eines Ordners oder die Adresse eines WebDAV-Servers an</translation>
    </message>
    <message>
        <source>The address has no scheme: write https:// before it, or http:// for a server on this computer that uses no encryption. If it is the path of a folder, write ./ before it</source>
        <translation>Die Adresse hat kein Schema: Schreiben Sie https:// davor, oder http:// bei einem Server auf diesem Computer ohne Verschlüsselung. Ist sie der Pfad eines Ordners, schreiben Sie ./ davor</translation>
    </message>
    <message>
        <source>cannot be created</source>
        <translation>kann nicht angelegt werden</translation>
    </message>
    <message>
        <source>cannot be made private</source>
        <translation>kann nicht vor anderen geschützt werden</translation>
    </message>
    <message>
        <source>cannot be opened</source>
        <translation>kann nicht geöffnet werden</translation>
    </message>
    <message>
        <source>it is not a document list</source>
        <translation>sie ist keine Dokumentliste</translation>
    </message>
    <message>
        <source>cannot be read or written</source>
        <translation>kann nicht gelesen oder geschrieben werden</translation>
    </message>
    <message>
        <source>cannot be written</source>
        <translation>kann nicht geschrieben werden</translation>
    </message>
    <message>
        <source>can be changed by other users</source>
        <translation>kann von anderen Benutzern geändert werden</translation>
    </message>
    <message>
        <source>could not be saved</source>
        <translation>konnte nicht gespeichert werden</translation>
    </message>
    <message>
        <source>a text is too long</source>
        <translation>ein Text ist zu lang</translation>
    </message>
    <message>
        <source>the disk is full</source>
        <translation>der Datenträger ist voll</translation>
    </message>
    <message>
        <source>has no file name</source>
        <translation>hat keinen Dateinamen</translation>
    </message>
    <message>
        <source>is being written by another program</source>
        <translation>wird gerade von einem anderen Programm geschrieben</translation>
    </message>
    <message>
        <source>is not a folder</source>
        <translation>ist kein Ordner</translation>
    </message>
    <message>
        <source>was written by a newer version of this program</source>
        <translation>wurde von einer neueren Version dieses Programms geschrieben</translation>
    </message>
    <message>
        <source>a record is not whole</source>
        <translation>ein Eintrag ist unvollständig</translation>
    </message>
    <message>
        <source>its last page is not whole</source>
        <translation>ihre letzte Seite ist unvollständig</translation>
    </message>
    <message>
        <source>it is not a regular file</source>
        <translation>sie ist keine gewöhnliche Datei</translation>
    </message>
    <message>
        <source>Sign in first.</source>
        <translation>Melden Sie sich zuerst an.</translation>
    </message>
    <message>
        <source>Sign in and try again.</source>
        <translation>Melden Sie sich an und versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>Sign in at that path. If only a proxy in front of the server knows the address that you gave, ask whoever runs it to let both use the same path.</source>
        <translation>Melden Sie sich unter diesem Pfad an. Kennt nur ein Proxy vor dem Server die angegebene Adresse, bitten Sie dessen Betreiber, beide denselben Pfad verwenden zu lassen.</translation>
    </message>
    <message>
        <source>If you trust that address, sign in with it.</source>
        <translation>Wenn Sie dieser Adresse vertrauen, melden Sie sich mit ihr an.</translation>
    </message>
    <message>
        <source>Enter the one that you have for the server.</source>
        <translation>Geben Sie das ein, das Sie für den Server haben.</translation>
    </message>
    <message>
        <source>Ask whoever runs the server whether it can take a password in another way.</source>
        <translation>Fragen Sie den Betreiber des Servers, ob er ein Passwort auf andere Weise annehmen kann.</translation>
    </message>
    <message>
        <source>Check the proxy, which the environment variables http_proxy and https_proxy name.</source>
        <translation>Prüfen Sie den Proxy, den die Umgebungsvariablen http_proxy und https_proxy nennen.</translation>
    </message>
    <message>
        <source>If the server is behind a proxy, the proxy has to rewrite the Destination field of requests. Otherwise ask whoever runs the server for permission to rename files.</source>
        <translation>Steht der Server hinter einem Proxy, muss dieser das Feld „Destination“ der Anfragen umschreiben. Andernfalls bitten Sie den Betreiber des Servers um die Erlaubnis, Dateien umzubenennen.</translation>
    </message>
    <message>
        <source>Try again in a minute.</source>
        <translation>Versuchen Sie es in einer Minute noch einmal.</translation>
    </message>
    <message>
        <source>Try again in a moment. If that does not help, end the other program.</source>
        <translation>Versuchen Sie es gleich noch einmal. Hilft das nicht, beenden Sie das andere Programm.</translation>
    </message>
    <message>
        <source>Try again later. If this keeps happening, tell whoever runs the server.</source>
        <translation>Versuchen Sie es später noch einmal. Wenn das immer wieder geschieht, sagen Sie es dem Betreiber des Servers.</translation>
    </message>
    <message>
        <source>Try again. If this happens again, tell whoever runs the server.</source>
        <translation>Versuchen Sie es noch einmal. Wenn das wieder geschieht, sagen Sie es dem Betreiber des Servers.</translation>
    </message>
    <message>
        <source>Refresh the list and try again. If this happens again, the document is damaged on the server.</source>
        <translation>Aktualisieren Sie die Liste und versuchen Sie es noch einmal. Wenn das wieder geschieht, ist das Dokument auf dem Server beschädigt.</translation>
    </message>
    <message>
        <source>Refresh the list, and check the address of the service.</source>
        <translation>Aktualisieren Sie die Liste und prüfen Sie die Adresse des Dienstes.</translation>
    </message>
    <message>
        <source>Refresh the list, and look at the newer version first.</source>
        <translation>Aktualisieren Sie die Liste und sehen Sie sich zuerst die neuere Version an.</translation>
    </message>
    <message>
        <source>Refresh the list, and remove it again if you still want to.</source>
        <translation>Aktualisieren Sie die Liste und entfernen Sie es noch einmal, wenn Sie das noch wollen.</translation>
    </message>
    <message>
        <source>Refresh the list, and remove it again.</source>
        <translation>Aktualisieren Sie die Liste und entfernen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>Refresh the list, and upload it again.</source>
        <translation>Aktualisieren Sie die Liste und laden Sie es noch einmal hoch.</translation>
    </message>
    <message>
        <source>Somebody may have put it there at the same moment. Refresh the list and look at it.</source>
        <translation>Vielleicht hat es jemand im selben Augenblick dorthin gelegt. Aktualisieren Sie die Liste und sehen Sie es sich an.</translation>
    </message>
    <message>
        <source>Somebody else may have changed it at the same moment. Refresh the list before you send it again.</source>
        <translation>Vielleicht hat es jemand anderes im selben Augenblick geändert. Aktualisieren Sie die Liste, bevor Sie es noch einmal senden.</translation>
    </message>
    <message>
        <source>Look at the newer version first.</source>
        <translation>Sehen Sie sich zuerst die neuere Version an.</translation>
    </message>
    <message>
        <source>Look at the version in the cloud first. To keep both, upload yours under another name.</source>
        <translation>Sehen Sie sich zuerst die Version in der Cloud an. Um beide zu behalten, laden Sie Ihre unter einem anderen Namen hoch.</translation>
    </message>
    <message>
        <source>Wait until that is done, or cancel it.</source>
        <translation>Warten Sie, bis das fertig ist, oder brechen Sie es ab.</translation>
    </message>
    <message>
        <source>Upload it as a new document, or refresh the list.</source>
        <translation>Laden Sie es als neues Dokument hoch, oder aktualisieren Sie die Liste.</translation>
    </message>
    <message>
        <source>Upload the changes, or choose another folder.</source>
        <translation>Laden Sie die Änderungen hoch, oder wählen Sie einen anderen Ordner.</translation>
    </message>
    <message>
        <source>Upload the file as a new document.</source>
        <translation>Laden Sie die Datei als neues Dokument hoch.</translation>
    </message>
    <message>
        <source>Download the document.</source>
        <translation>Laden Sie das Dokument herunter.</translation>
    </message>
    <message>
        <source>Download the document first.</source>
        <translation>Laden Sie das Dokument zuerst herunter.</translation>
    </message>
    <message>
        <source>Rename it in the cloud.</source>
        <translation>Benennen Sie es in der Cloud um.</translation>
    </message>
    <message>
        <source>Give the file a shorter name.</source>
        <translation>Geben Sie der Datei einen kürzeren Namen.</translation>
    </message>
    <message>
        <source>Give the file another name.</source>
        <translation>Geben Sie der Datei einen anderen Namen.</translation>
    </message>
    <message>
        <source>Choose a PDF file.</source>
        <translation>Wählen Sie eine PDF-Datei.</translation>
    </message>
    <message>
        <source>Choose the PDF files in it.</source>
        <translation>Wählen Sie die PDF-Dateien darin.</translation>
    </message>
    <message>
        <source>Choose another folder.</source>
        <translation>Wählen Sie einen anderen Ordner.</translation>
    </message>
    <message>
        <source>Choose another folder to download to.</source>
        <translation>Wählen Sie einen anderen Ordner zum Herunterladen.</translation>
    </message>
    <message>
        <source>Choose another folder, or move that file away.</source>
        <translation>Wählen Sie einen anderen Ordner, oder verschieben Sie diese Datei.</translation>
    </message>
    <message>
        <source>Choose another folder, or move that file away first.</source>
        <translation>Wählen Sie einen anderen Ordner, oder verschieben Sie zuerst diese Datei.</translation>
    </message>
    <message>
        <source>Create the folder, or make its drive available, and sign in again.</source>
        <translation>Legen Sie den Ordner an, oder machen Sie sein Laufwerk verfügbar, und melden Sie sich noch einmal an.</translation>
    </message>
    <message>
        <source>Make the folder available again, for instance by connecting its drive.</source>
        <translation>Machen Sie den Ordner wieder verfügbar, etwa indem Sie sein Laufwerk anschließen.</translation>
    </message>
    <message>
        <source>Check its permissions.</source>
        <translation>Prüfen Sie ihre Zugriffsrechte.</translation>
    </message>
    <message>
        <source>Check its permissions, and the disk that it is on.</source>
        <translation>Prüfen Sie die Zugriffsrechte und den Datenträger.</translation>
    </message>
    <message>
        <source>Check that the address is that of the server itself, and try again.</source>
        <translation>Prüfen Sie, ob die Adresse die des Servers selbst ist, und versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>Check that the file is there and that you may read it.</source>
        <translation>Prüfen Sie, ob die Datei da ist und Sie sie lesen dürfen.</translation>
    </message>
    <message>
        <source>Check that the folder is there and that you may write to it.</source>
        <translation>Prüfen Sie, ob der Ordner da ist und Sie in ihn schreiben dürfen.</translation>
    </message>
    <message>
        <source>Check that there is room in the cloud, and try again.</source>
        <translation>Prüfen Sie, ob in der Cloud Platz ist, und versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>Check that you may write to the folder.</source>
        <translation>Prüfen Sie, ob Sie in den Ordner schreiben dürfen.</translation>
    </message>
    <message>
        <source>Choose a file for it</source>
        <translation>Wählen Sie eine Datei dafür</translation>
    </message>
    <message>
        <source>Choose another folder</source>
        <translation>Wählen Sie einen anderen Ordner</translation>
    </message>
    <message>
        <source>Check that its folder exists and that you may write to it</source>
        <translation>Prüfen Sie, ob es ihren Ordner gibt und Sie in ihn schreiben dürfen</translation>
    </message>
    <message>
        <source>Check the disk and try again</source>
        <translation>Prüfen Sie den Datenträger und versuchen Sie es noch einmal</translation>
    </message>
    <message>
        <source>Check the permissions of the file and its folder</source>
        <translation>Prüfen Sie die Zugriffsrechte der Datei und ihres Ordners</translation>
    </message>
    <message>
        <source>Free some space and try again</source>
        <translation>Schaffen Sie Platz und versuchen Sie es noch einmal</translation>
    </message>
    <message>
        <source>Free some space or check the permissions of its folder</source>
        <translation>Schaffen Sie Platz, oder prüfen Sie die Zugriffsrechte des Ordners</translation>
    </message>
    <message>
        <source>Make sure that only you can write to it or choose another folder</source>
        <translation>Sorgen Sie dafür, dass nur Sie hineinschreiben dürfen, oder wählen Sie einen anderen Ordner</translation>
    </message>
    <message>
        <source>Move it away or choose another folder</source>
        <translation>Verschieben Sie sie, oder wählen Sie einen anderen Ordner</translation>
    </message>
    <message>
        <source>Move it away; the documents will then be listed again from the cloud</source>
        <translation>Verschieben Sie sie; die Dokumente werden dann neu aus der Cloud aufgelistet</translation>
    </message>
    <message>
        <source>Remove the document that it belongs to</source>
        <translation>Entfernen Sie das Dokument, zu dem er gehört</translation>
    </message>
    <message>
        <source>Update this program</source>
        <translation>Aktualisieren Sie dieses Programm</translation>
    </message>
    <message>
        <source>Wait until that is done and try again</source>
        <translation>Warten Sie, bis das fertig ist, und versuchen Sie es noch einmal</translation>
    </message>
    <message>
        <source>The server has been silent for %1 seconds</source>
        <translation>Der Server schweigt seit %1 Sekunden</translation>
    </message>
    <message>
        <source>The server has not finished its answer in %1 seconds</source>
        <translation>Der Server ist in %1 Sekunden nicht mit seiner Antwort fertig geworden</translation>
    </message>
    <message>
        <source>The proxy %1 asks for a password (407)</source>
        <translation>Der Proxy %1 verlangt ein Passwort (407)</translation>
    </message>
    <message>
        <source>The proxy %1 cannot be used</source>
        <translation>Der Proxy %1 kann nicht verwendet werden</translation>
    </message>
    <message>
        <source>it refuses (%1)</source>
        <translation>er lehnt ab (%1)</translation>
    </message>
    <message>
        <source>The server redirects to another address: %1</source>
        <translation>Der Server leitet zu einer anderen Adresse um: %1</translation>
    </message>
    <message>
        <source>The server withholds the details of %1 documents</source>
        <translation>Der Server hält die Angaben zu %1 Dokumenten zurück</translation>
    </message>
    <message>
        <source>The server asks for a form of sign-in that is not supported here: %1</source>
        <translation>Der Server verlangt eine Form der Anmeldung, die hier nicht unterstützt wird: %1</translation>
    </message>
    <message>
        <source>The addresses in the server&apos;s answer begin with %1 and not with %2</source>
        <translation>Die Adressen in der Antwort des Servers beginnen mit %1 und nicht mit %2</translation>
    </message>
    <message>
        <source>%1 of %2 bytes arrived</source>
        <translation>%1 von %2 Bytes sind angekommen</translation>
    </message>
    <message>
        <source>The server answers with %1 instead of the document</source>
        <translation>Der Server antwortet mit %1 statt mit dem Dokument</translation>
    </message>
    <message>
        <source>The server sends more than the %1 bytes of the document</source>
        <translation>Der Server sendet mehr als die %1 Bytes des Dokuments</translation>
    </message>
    <message>
        <source>The server sends the document compressed (%1), although this was not requested</source>
        <translation>Der Server sendet das Dokument komprimiert (%1), obwohl das nicht verlangt wurde</translation>
    </message>
    <message>
        <source>The server kept %1 of %2 bytes</source>
        <translation>Der Server hat %1 von %2 Bytes behalten</translation>
    </message>
    <message>
        <source>The server has lost the old document. What was sent is there as %1.</source>
        <translation>Der Server hat das alte Dokument verloren. Was gesendet wurde, ist dort als %1.</translation>
    </message>
    <message>
        <source>There is no folder &quot;%1&quot;</source>
        <translation>Den Ordner „%1“ gibt es nicht</translation>
    </message>
    <message>
        <source>you do not have permission to write to the folder &quot;%1&quot;</source>
        <translation>Sie dürfen in den Ordner „%1“ nicht schreiben</translation>
    </message>
    <message>
        <source>The folder %1 does not exist</source>
        <translation>Den Ordner %1 gibt es nicht</translation>
    </message>
    <message>
        <source>The folder %1 is not the one that was used before</source>
        <translation>Der Ordner %1 ist nicht der bisher verwendete</translation>
    </message>
    <message>
        <source>Another folder has taken the place of %1</source>
        <translation>An der Stelle von %1 ist jetzt ein anderer Ordner</translation>
    </message>
    <message>
        <source>You are not allowed to read the folder %1</source>
        <translation>Sie dürfen den Ordner %1 nicht lesen</translation>
    </message>
    <message>
        <source>A document that another program was changing cannot be put back: %1</source>
        <translation>Ein Dokument, das ein anderes Programm geändert hat, kann nicht zurückgelegt werden: %1</translation>
    </message>
    <message>
        <source>The storage limit of %1 MiB does not leave room for it</source>
        <translation>Die Speichergrenze von %1 MiB lässt dafür keinen Platz</translation>
    </message>
    <message>
        <source>Nothing can be written to %1: %2</source>
        <translation>In %1 kann nichts geschrieben werden: %2</translation>
    </message>
    <message>
        <source>Nothing can be written to %1</source>
        <translation>In %1 kann nichts geschrieben werden</translation>
    </message>
    <message>
        <source>%1 is in the place of a folder that is needed there</source>
        <translation>%1 steht an der Stelle eines Ordners, der dort gebraucht wird</translation>
    </message>
    <message>
        <source>%1 cannot be read: %2</source>
        <translation>%1 kann nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>%1 cannot be written: %2</source>
        <translation>%1 kann nicht geschrieben werden: %2</translation>
    </message>
    <message>
        <source>%1 has changed in the meantime</source>
        <translation>%1 hat sich inzwischen geändert</translation>
    </message>
    <message>
        <source>%1 is not a file</source>
        <translation>%1 ist keine Datei</translation>
    </message>
    <message>
        <source>%1 is there already, and is not an unchanged copy of the document</source>
        <translation>%1 ist schon da und ist keine unveränderte Kopie des Dokuments</translation>
    </message>
    <message>
        <source>The name of the file to write %1</source>
        <translation>Der Name der zu schreibenden Datei %1</translation>
    </message>
    <message>
        <source>The name %1</source>
        <translation>Der Name %1</translation>
    </message>
    <message>
        <source>is longer than %1 bytes</source>
        <translation>ist länger als %1 Bytes</translation>
    </message>
    <message>
        <source>The folder for previews cannot be written to: %1</source>
        <translation>In den Ordner für Vorschaubilder kann nicht geschrieben werden: %1</translation>
    </message>
    <message>
        <source>Rendering took longer than %1 seconds</source>
        <translation>Das Zeichnen hat länger als %1 Sekunden gedauert</translation>
    </message>
    <message>
        <source>&quot;%1:&quot; is not a supported kind of service. Use https: for a WebDAV server, or the path of a folder</source>
        <translation>„%1:“ ist keine unterstützte Art von Dienst. Verwenden Sie https: für einen WebDAV-Server oder den Pfad eines Ordners</translation>
    </message>
    <message>
        <source>The certificate file %1 cannot be read: %2</source>
        <translation>Die Zertifikatsdatei %1 kann nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>The file %1 contains no certificate in PEM format</source>
        <translation>Die Datei %1 enthält kein Zertifikat im PEM-Format</translation>
    </message>
    <message>
        <source>The folder &quot;%1&quot; cannot be created. Check that you have permission to write to its parent folder.</source>
        <translation>Der Ordner „%1“ kann nicht angelegt werden. Prüfen Sie, ob Sie in den Ordner darüber schreiben dürfen.</translation>
    </message>
    <message>
        <source>The folder &quot;%1&quot; has the documents of another service. Give each service a folder of its own.</source>
        <translation>Der Ordner „%1“ hat die Dokumente eines anderen Dienstes. Geben Sie jedem Dienst einen eigenen Ordner.</translation>
    </message>
    <message>
        <source>The document list &quot;%1&quot; %2. %3.</source>
        <translation>Die Dokumentliste „%1“ %2. %3.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; %2. %3.</source>
        <translation>„%1“ %2. %3.</translation>
    </message>
    <message>
        <source>is damaged (%1)</source>
        <translation>ist beschädigt (%1)</translation>
    </message>
    <message>
        <source>What was sent may be in the cloud already, as %1. Refresh the list before you send it again.</source>
        <translation>Was gesendet wurde, ist vielleicht schon in der Cloud, als %1. Aktualisieren Sie die Liste, bevor Sie es noch einmal senden.</translation>
    </message>
    <message>
        <source>Make its drive available and sign in again. If this is the right folder, delete %1 first.</source>
        <translation>Machen Sie sein Laufwerk verfügbar und melden Sie sich noch einmal an. Ist es der richtige Ordner, löschen Sie zuerst %1.</translation>
    </message>
    <message>
        <source>It cannot be read: %1</source>
        <translation>Es kann nicht gelesen werden: %1</translation>
    </message>
    <message>
        <source>The address has no path; it should look like file:///home/me/Cloud</source>
        <translation>Die Adresse hat keinen Pfad; sie soll aussehen wie file:///home/me/Cloud</translation>
    </message>
    <message>
        <source>&quot;%1&quot; cannot be used as a cloud service: %2</source>
        <translation>„%1“ kann nicht als Cloud-Dienst verwendet werden: %2</translation>
    </message>
    <message>
        <source>it is not the address of a folder</source>
        <translation>es ist nicht die Adresse eines Ordners</translation>
    </message>
    <message>
        <source>leave out what follows &quot;?&quot; or &quot;#&quot;</source>
        <translation>lassen Sie weg, was auf „?“ oder „#“ folgt</translation>
    </message>
    <message>
        <source>a user name must not contain colons or control characters</source>
        <translation>ein Benutzername darf keine Doppelpunkte und keine Steuerzeichen enthalten</translation>
    </message>
    <message>
        <source>http: would send the password and the documents unencrypted; use https:</source>
        <translation>http: würde das Passwort und die Dokumente unverschlüsselt senden; verwenden Sie https:</translation>
    </message>
    <message>
        <source>Not signed in</source>
        <translation>Nicht angemeldet</translation>
    </message>
</context>
<context>
    <name>Texts</name>
    <message>
        <source>Today, %1</source>
        <translation>Heute, %1</translation>
    </message>
    <message>
        <source>Only in the cloud</source>
        <translation>Nur in der Cloud</translation>
    </message>
    <message>
        <source>Changed on this computer</source>
        <translation>Auf diesem Computer geändert</translation>
    </message>
    <message>
        <source>Changed in the cloud</source>
        <translation>In der Cloud geändert</translation>
    </message>
    <message>
        <source>Changed on both sides</source>
        <translation>Auf beiden Seiten geändert</translation>
    </message>
    <message>
        <source>Not in the cloud</source>
        <translation>Nicht in der Cloud</translation>
    </message>
    <message>
        <source>Signing in failed.</source>
        <translation>Die Anmeldung ist fehlgeschlagen.</translation>
    </message>
    <message>
        <source>The list of documents is not up to date.</source>
        <translation>Die Dokumentliste ist nicht auf dem neuesten Stand.</translation>
    </message>
    <message>
        <source>“%1” was not uploaded.</source>
        <translation>„%1“ wurde nicht hochgeladen.</translation>
    </message>
    <message>
        <source>“%1” was not downloaded.</source>
        <translation>„%1“ wurde nicht heruntergeladen.</translation>
    </message>
    <message>
        <source>“%1” was not removed.</source>
        <translation>„%1“ wurde nicht entfernt.</translation>
    </message>
    <message>
        <source>%1 of storage</source>
        <translation>%1 Speicher</translation>
    </message>
    <message>
        <source>%1 of %2 used</source>
        <translation>%1 von %2 belegt</translation>
    </message>
    <message>
        <source>%1 used</source>
        <translation>%1 belegt</translation>
    </message>
    <message>
        <source>Up to date</source>
        <translation>Auf dem neuesten Stand</translation>
    </message>
    <message>
        <source>There is no preview of “%1”.</source>
        <translation>Für „%1“ gibt es keine Vorschau.</translation>
    </message>
    <message>
        <source>The cloud does not report how much storage is used.</source>
        <translation>Die Cloud teilt nicht mit, wie viel Speicher belegt ist.</translation>
    </message>
    <message>
        <source>%1 s left</source>
        <translation>noch %1 s</translation>
    </message>
    <message>
        <source>%1 min left</source>
        <translation>noch %1 min</translation>
    </message>
    <message>
        <source>%1 h left</source>
        <translation>noch %1 h</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>%1/s</source>
        <translation>%1/s</translation>
    </message>
    <message>
        <source>Up to %1</source>
        <translation>Bis zu %1</translation>
    </message>
    <message numerus="yes">
        <source>%1 and %n more</source>
        <translation>
            <numerusform>%1 und %n weitere</numerusform>
            <numerusform>%1 und %n weitere</numerusform>
        </translation>
    </message>
    <message>
        <source>The version on this computer</source>
        <translation>Die Fassung auf diesem Computer</translation>
    </message>
    <message>
        <source>The version in the cloud</source>
        <translation>Die Fassung in der Cloud</translation>
    </message>
</context>
<context>
    <name>Titles</name>
    <message>
        <source>Sorted ascending</source>
        <translation>Aufsteigend sortiert</translation>
    </message>
    <message>
        <source>Sorted descending</source>
        <translation>Absteigend sortiert</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Shows and manages PDF documents in the cloud.</source>
        <translation>Zeigt und verwaltet PDF-Dokumente in der Cloud.</translation>
    </message>
    <message>
        <source>Folder for settings, the list of documents and previews.</source>
        <translation>Ordner für Einstellungen, Dokumentliste und Vorschauen.</translation>
    </message>
    <message>
        <source>Folder or WebDAV server to sign in to (default: the last one).</source>
        <translation>Ordner oder WebDAV-Server, an dem man sich anmeldet (Standard: der letzte).</translation>
    </message>
    <message>
        <source>PDF documents to upload.</source>
        <translation>PDF-Dokumente zum Hochladen.</translation>
    </message>
</context>
</TS>
