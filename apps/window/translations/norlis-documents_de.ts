<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
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
        <translation>A&amp;bmelden</translation>
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
        <source>&amp;Remove…</source>
        <translation>&amp;Entfernen …</translation>
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
</context>
<context>
    <name>Norlis::Window::DocumentCommands</name>
    <message>
        <source>Upload PDF Documents</source>
        <translation>PDF-Dokumente hochladen</translation>
    </message>
    <message>
        <source>PDF documents (*.pdf *.PDF)</source>
        <translation>PDF-Dokumente (*.pdf *.PDF)</translation>
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
        <source>Download To</source>
        <translation>Herunterladen nach</translation>
    </message>
    <message>
        <source>“%1” cannot be opened.</source>
        <translation>„%1“ kann nicht geöffnet werden.</translation>
    </message>
    <message>
        <source>No program for opening PDF documents was found. The document is at %1.</source>
        <translation>Es wurde kein Programm zum Öffnen von PDF-Dokumenten gefunden. Das Dokument liegt unter %1.</translation>
    </message>
    <message>
        <source>“%1” was not removed.</source>
        <translation>„%1“ wurde nicht entfernt.</translation>
    </message>
    <message>
        <source>It has changed in the cloud since you were asked.</source>
        <translation>Es hat sich in der Cloud geändert, seit Sie gefragt wurden.</translation>
    </message>
</context>
<context>
    <name>Norlis::Window::DocumentsPage</name>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Search by name</source>
        <translation>Nach Namen suchen</translation>
    </message>
    <message>
        <source>Name, A to Z</source>
        <translation>Name, A bis Z</translation>
    </message>
    <message>
        <source>Name, Z to A</source>
        <translation>Name, Z bis A</translation>
    </message>
    <message>
        <source>Newest first</source>
        <translation>Neueste zuerst</translation>
    </message>
    <message>
        <source>Largest first</source>
        <translation>Größte zuerst</translation>
    </message>
    <message>
        <source>Try Again</source>
        <translation>Erneut versuchen</translation>
    </message>
    <message>
        <source>No documents yet</source>
        <translation>Noch keine Dokumente</translation>
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
    <message>
        <source>as of %1</source>
        <translation>Stand %1</translation>
    </message>
    <message>
        <source>Toolbar</source>
        <translation>Symbolleiste</translation>
    </message>
    <message>
        <source>Clear Search</source>
        <translation>Suche löschen</translation>
    </message>
    <message>
        <source>Sort order</source>
        <translation>Sortierung</translation>
    </message>
    <message>
        <source>Sign In…</source>
        <translation>Anmelden …</translation>
    </message>
    <message>
        <source>You have been signed out.</source>
        <translation>Sie wurden abgemeldet.</translation>
    </message>
    <message>
        <source>No matching documents</source>
        <translation>Keine passenden Dokumente</translation>
    </message>
    <message>
        <source>You searched for “%1”.</source>
        <translation>Sie haben nach „%1“ gesucht.</translation>
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
        <source>refreshing…</source>
        <translation>wird aktualisiert …</translation>
    </message>
    <message>
        <source>signing in…</source>
        <translation>Anmeldung läuft …</translation>
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
    <name>Norlis::Window::DocumentsView</name>
    <message>
        <source>Documents</source>
        <translation>Dokumente</translation>
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
        <source>Transfers are still running. Sign out anyway?</source>
        <translation>Es laufen noch Übertragungen. Trotzdem abmelden?</translation>
    </message>
    <message>
        <source>The settings could not be saved.</source>
        <translation>Die Einstellungen konnten nicht gespeichert werden.</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Transfers are still running. Quit anyway?</source>
        <translation>Es laufen noch Übertragungen. Trotzdem beenden?</translation>
    </message>
    <message>
        <source>No password or token was given.</source>
        <translation>Es wurde kein Passwort oder Token angegeben.</translation>
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
</context>
<context>
    <name>Norlis::Window::Questions</name>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
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
        <source>“%1” has changed in the cloud too. Replace it?</source>
        <translation>„%1“ hat sich auch in der Cloud geändert. Trotzdem ersetzen?</translation>
    </message>
    <message numerus="yes">
        <source>%n documents have changed in the cloud too. Replace them?</source>
        <translation>
            <numerusform>%n Dokument hat sich auch in der Cloud geändert. Trotzdem ersetzen?</numerusform>
            <numerusform>%n Dokumente haben sich auch in der Cloud geändert. Trotzdem ersetzen?</numerusform>
        </translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Ersetzen</translation>
    </message>
    <message>
        <source>The changes made in the cloud will be lost. To keep both versions, download the one in the cloud to another folder first.</source>
        <translation>Die Änderungen in der Cloud gehen dabei verloren. Um beide Fassungen zu behalten, laden Sie die aus der Cloud zuerst in einen anderen Ordner herunter.</translation>
    </message>
    <message>
        <source>This cannot be undone. Copies on this computer are kept.</source>
        <translation>Das lässt sich nicht rückgängig machen. Kopien auf diesem Computer bleiben erhalten.</translation>
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
        <source>%1%</source>
        <translation>%1 %</translation>
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
</context>
<context>
    <name>Norlis::Window::TransfersPanel</name>
    <message>
        <source>Cancel All</source>
        <translation>Alle abbrechen</translation>
    </message>
    <message>
        <source>Try Again</source>
        <translation>Erneut versuchen</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Leeren</translation>
    </message>
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
    <message numerus="yes">
        <source>%n transfer(s) running</source>
        <translation>
            <numerusform>%n Übertragung läuft</numerusform>
            <numerusform>%n Übertragungen laufen</numerusform>
        </translation>
    </message>
    <message>
        <source>All transfers have finished</source>
        <translation>Alle Übertragungen sind abgeschlossen</translation>
    </message>
    <message>
        <source>Cancel Selected</source>
        <translation>Ausgewählte abbrechen</translation>
    </message>
    <message>
        <source>Press Delete to cancel the selected transfers, Return to retry failed ones</source>
        <translation>Mit Entf brechen Sie die ausgewählten Übertragungen ab, mit der Eingabetaste versuchen Sie fehlgeschlagene erneut</translation>
    </message>
    <message>
        <source>Remove finished and failed transfers from the list</source>
        <translation>Fertige und fehlgeschlagene Übertragungen aus der Liste entfernen</translation>
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
        <source>&amp;Address:</source>
        <translation>&amp;Adresse:</translation>
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
        <translation>Nur für private oder selbstsignierte Zertifikate nötig</translation>
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
        <source>This can be a folder that another program synchronises, a folder on a network drive, or a new one. If it does not exist, it will be created.</source>
        <translation>Das kann ein Ordner sein, den ein anderes Programm synchronisiert, einer auf einem Netzlaufwerk oder ein neuer. Fehlt der Ordner, wird er angelegt.</translation>
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
</context>
</TS>
