<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>Norlis::Window::DocumentActions</name>
    <message>
        <source>&amp;Upload …</source>
        <translation>&amp;Hochladen …</translation>
    </message>
    <message>
        <source>Send PDF files to the cloud</source>
        <translation>PDF-Dateien in die Cloud senden</translation>
    </message>
    <message>
        <source>&amp;Download</source>
        <translation>Herunter&amp;laden</translation>
    </message>
    <message>
        <source>Fetch the selected documents into the folder for downloads</source>
        <translation>Die gewählten Dokumente in den Ordner für Downloads holen</translation>
    </message>
    <message>
        <source>Download &amp;To …</source>
        <translation>Herunterladen n&amp;ach …</translation>
    </message>
    <message>
        <source>Fetch the selected documents into a folder that you choose</source>
        <translation>Die gewählten Dokumente in einen Ordner Ihrer Wahl holen</translation>
    </message>
    <message>
        <source>&amp;Open</source>
        <translation>Ö&amp;ffnen</translation>
    </message>
    <message>
        <source>Open the selected documents, and fetch those that are not here</source>
        <translation>Die gewählten Dokumente öffnen und vorher holen, was nicht hier ist</translation>
    </message>
    <message>
        <source>Upload &amp;Changes</source>
        <translation>Ä&amp;nderungen hochladen</translation>
    </message>
    <message>
        <source>Replace the documents in the cloud by what you have changed here</source>
        <translation>Die Dokumente in der Cloud durch das ersetzen, was Sie hier geändert haben</translation>
    </message>
    <message>
        <source>&amp;Remove …</source>
        <translation>&amp;Entfernen …</translation>
    </message>
    <message>
        <source>Remove the selected documents from the cloud</source>
        <translation>Die gewählten Dokumente aus der Cloud entfernen</translation>
    </message>
    <message>
        <source>&amp;Refresh</source>
        <translation>A&amp;ktualisieren</translation>
    </message>
    <message>
        <source>Fetch the list of documents again</source>
        <translation>Die Liste der Dokumente neu holen</translation>
    </message>
    <message>
        <source>&amp;Thumbnails</source>
        <translation>&amp;Vorschaubilder</translation>
    </message>
    <message>
        <source>Show pictures</source>
        <translation>Bilder zeigen</translation>
    </message>
    <message>
        <source>&amp;List</source>
        <translation>&amp;Liste</translation>
    </message>
    <message>
        <source>Show one document per line</source>
        <translation>Ein Dokument je Zeile zeigen</translation>
    </message>
    <message>
        <source>&amp;Find</source>
        <translation>&amp;Suchen</translation>
    </message>
    <message>
        <source>Look for a document by its name</source>
        <translation>Ein Dokument nach seinem Namen suchen</translation>
    </message>
    <message>
        <source>Forget the password and show another cloud</source>
        <translation>Das Passwort vergessen und eine andere Cloud zeigen</translation>
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
        <translation>„%1“ lässt sich nicht öffnen.</translation>
    </message>
    <message>
        <source>There is no program for PDF documents. The document is at %1.</source>
        <translation>Es gibt kein Programm für PDF-Dokumente. Das Dokument liegt unter %1.</translation>
    </message>
</context>
<context>
    <name>Norlis::Window::DocumentsPage</name>
    <message>
        <source>Tools</source>
        <translation>Werkzeuge</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Search by name</source>
        <translation>Nach Namen suchen</translation>
    </message>
    <message>
        <source>Order of the documents</source>
        <translation>Reihenfolge der Dokumente</translation>
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
        <source>Sign In …</source>
        <translation>Anmelden …</translation>
    </message>
    <message>
        <source>You are not signed in any more.</source>
        <translation>Sie sind nicht mehr angemeldet.</translation>
    </message>
    <message>
        <source>Try Again</source>
        <translation>Noch einmal versuchen</translation>
    </message>
    <message>
        <source>No document is called that</source>
        <translation>Kein Dokument heißt so</translation>
    </message>
    <message>
        <source>Looked for “%1”.</source>
        <translation>Gesucht wurde „%1“.</translation>
    </message>
    <message>
        <source>Clear the Search</source>
        <translation>Suche leeren</translation>
    </message>
    <message>
        <source>Looking for documents …</source>
        <translation>Dokumente werden gesucht …</translation>
    </message>
    <message>
        <source>No documents yet</source>
        <translation>Noch keine Dokumente</translation>
    </message>
    <message>
        <source>Drop PDF files here, or choose them.</source>
        <translation>Ziehen Sie PDF-Dateien hierher, oder wählen Sie welche.</translation>
    </message>
    <message>
        <source>Upload …</source>
        <translation>Hochladen …</translation>
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
        <source>refreshing …</source>
        <translation>wird aktualisiert …</translation>
    </message>
    <message>
        <source>signing in …</source>
        <translation>Anmeldung läuft …</translation>
    </message>
    <message>
        <source>as of %1</source>
        <translation>Stand %1</translation>
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
        <source>&amp;Program</source>
        <translation>&amp;Programm</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>The documents cannot be shown.</source>
        <translation>Die Dokumente lassen sich nicht zeigen.</translation>
    </message>
    <message>
        <source>The password cannot be kept.</source>
        <translation>Das Passwort lässt sich nicht aufbewahren.</translation>
    </message>
    <message>
        <source>Documents — %1</source>
        <translation>Dokumente — %1</translation>
    </message>
    <message>
        <source>Sign out and cancel the transfers that are running?</source>
        <translation>Abmelden und die laufenden Übertragungen abbrechen?</translation>
    </message>
    <message>
        <source>Quit and cancel the transfers that are running?</source>
        <translation>Beenden und die laufenden Übertragungen abbrechen?</translation>
    </message>
    <message>
        <source>The settings cannot be stored.</source>
        <translation>Die Einstellungen lassen sich nicht speichern.</translation>
    </message>
    <message>
        <source>Sign Out</source>
        <translation>Abmelden</translation>
    </message>
    <message>
        <source>Stay</source>
        <translation>Bleiben</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
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
        <source>This cannot be undone. Copies on this computer stay where they are.</source>
        <translation>Das lässt sich nicht rückgängig machen. Kopien auf diesem Rechner bleiben, wo sie sind.</translation>
    </message>
    <message>
        <source>“%1” has changed in the cloud too. Replace it?</source>
        <translation>„%1“ hat sich auch in der Cloud geändert. Ersetzen?</translation>
    </message>
    <message numerus="yes">
        <source>%n documents have changed in the cloud too. Replace them?</source>
        <translation>
            <numerusform>%n Dokument hat sich auch in der Cloud geändert. Ersetzen?</numerusform>
            <numerusform>%n Dokumente haben sich auch in der Cloud geändert. Ersetzen?</numerusform>
        </translation>
    </message>
    <message>
        <source>What was changed in the cloud is lost then. Download it into another folder first to keep both.</source>
        <translation>Was in der Cloud geändert wurde, geht dann verloren. Laden Sie es erst in einen anderen Ordner herunter, um beides zu behalten.</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Ersetzen</translation>
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
</context>
<context>
    <name>Norlis::Window::Transfers</name>
    <message>
        <source>In %1</source>
        <translation>In %1</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>gescheitert</translation>
    </message>
    <message>
        <source>finished</source>
        <translation>fertig</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>Download of %1: %2</source>
        <translation>Download von %1: %2</translation>
    </message>
    <message>
        <source>Upload of %1: %2</source>
        <translation>Upload von %1: %2</translation>
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
        <translation>Noch einmal versuchen</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Leeren</translation>
    </message>
    <message>
        <source>Transfers</source>
        <translation>Übertragungen</translation>
    </message>
    <message>
        <source>Delete cancels the selected transfers, Return tries failed ones again</source>
        <translation>Entf bricht die gewählten Übertragungen ab, Eingabe versucht gescheiterte noch einmal</translation>
    </message>
    <message>
        <source>Forget the transfers that have ended</source>
        <translation>Beendete Übertragungen vergessen</translation>
    </message>
    <message numerus="yes">
        <source>%n failed</source>
        <translation>
            <numerusform>%n gescheitert</numerusform>
            <numerusform>%n gescheitert</numerusform>
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
        <translation>Alle Übertragungen sind fertig</translation>
    </message>
    <message>
        <source>Cancel Selected</source>
        <translation>Gewählte abbrechen</translation>
    </message>
</context>
<context>
    <name>Norlis::Window::WelcomePage</name>
    <message>
        <source>Only for servers with a certificate of their own</source>
        <translation>Nur für Server mit einem eigenen Zertifikat</translation>
    </message>
    <message>
        <source>Use This Folder</source>
        <translation>Diesen Ordner nehmen</translation>
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
        <source>This program shows the PDF documents that you keep in a cloud: it sends and fetches them, and tells which ones have changed. Any folder can be the cloud, and so can a WebDAV server.</source>
        <translation>Dieses Programm zeigt die PDF-Dokumente, die Sie in einer Cloud haben: Es sendet und holt sie und sagt, welche sich geändert haben. Jeder Ordner kann die Cloud sein, und ein WebDAV-Server auch.</translation>
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
        <source>Signing in …</source>
        <translation>Anmeldung läuft …</translation>
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
        <source>Choose …</source>
        <translation>Wählen …</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>One that another program keeps in step with other computers, one on a network drive, or a new one: a folder that is missing is made.</source>
        <translation>Einer, den ein anderes Programm mit anderen Rechnern abgleicht, einer auf einem Netzlaufwerk oder ein neuer: Fehlt der Ordner, so wird er angelegt.</translation>
    </message>
    <message>
        <source>Choose a folder</source>
        <translation>Ordner wählen</translation>
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
        <translation>Zertifikatsdatei wählen</translation>
    </message>
    <message>
        <source>Certificate file</source>
        <translation>Zertifikatsdatei</translation>
    </message>
    <message>
        <source>Choose a file with certificates</source>
        <translation>Datei mit Zertifikaten wählen</translation>
    </message>
    <message>
        <source>Certificates (*.pem *.crt);;All files (*)</source>
        <translation>Zertifikate (*.pem *.crt);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>This is no folder.</source>
        <translation>Das ist kein Ordner.</translation>
    </message>
    <message>
        <source>Choose one, or write its whole path.</source>
        <translation>Wählen Sie einen, oder schreiben Sie den ganzen Pfad.</translation>
    </message>
    <message>
        <source>The folder cannot be made.</source>
        <translation>Der Ordner lässt sich nicht anlegen.</translation>
    </message>
    <message>
        <source>Check that you may write to the folder that it is in.</source>
        <translation>Prüfen Sie, ob Sie in den Ordner schreiben dürfen, in dem er liegt.</translation>
    </message>
    <message>
        <source>Something is missing.</source>
        <translation>Es fehlt etwas.</translation>
    </message>
    <message>
        <source>A server needs its address and a password or token.</source>
        <translation>Ein Server braucht seine Adresse und ein Passwort oder Token.</translation>
    </message>
    <message>
        <source>This is the address of a folder.</source>
        <translation>Das ist die Adresse eines Ordners.</translation>
    </message>
    <message>
        <source>Use the upper part of the page for it.</source>
        <translation>Nehmen Sie dafür den oberen Teil der Seite.</translation>
    </message>
    <message>
        <source>This address cannot be used.</source>
        <translation>Diese Adresse ist nicht zu brauchen.</translation>
    </message>
    <message>
        <source>There is a file of that name. Choose a folder.</source>
        <translation>So heißt eine Datei. Wählen Sie einen Ordner.</translation>
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
        <source>In step</source>
        <translation>Auf gleichem Stand</translation>
    </message>
    <message>
        <source>Changed on this computer</source>
        <translation>Auf diesem Rechner geändert</translation>
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
        <translation>Die Anmeldung ist gescheitert.</translation>
    </message>
    <message>
        <source>The list of documents is not up to date.</source>
        <translation>Die Liste der Dokumente ist nicht auf dem neuesten Stand.</translation>
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
        <source>There is no picture of “%1”.</source>
        <translation>Von „%1“ gibt es kein Bild.</translation>
    </message>
    <message>
        <source>The cloud does not tell how much storage is used.</source>
        <translation>Die Cloud sagt nicht, wie viel Speicher belegt ist.</translation>
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
</context>
<context>
    <name>main</name>
    <message>
        <source>Shows the PDF documents in a cloud.</source>
        <translation>Zeigt die PDF-Dokumente in einer Cloud.</translation>
    </message>
    <message>
        <source>Folder for settings, the list of documents and pictures.</source>
        <translation>Ordner für Einstellungen, die Liste der Dokumente und Bilder.</translation>
    </message>
    <message>
        <source>Sign in to this folder or WebDAV server; the last one unless given.</source>
        <translation>An diesem Ordner oder WebDAV-Server anmelden; ohne Angabe am letzten.</translation>
    </message>
</context>
</TS>
