<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>Norlis::Window::DocumentCommands</name>
    <message numerus="yes">
        <source>%n of the files are not PDF documents and were not uploaded.</source>
        <translation>
            <numerusform>%n of the files is not a PDF document and was not uploaded.</numerusform>
            <numerusform>%n of the files are not PDF documents and were not uploaded.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Norlis::Window::DocumentsPage</name>
    <message numerus="yes">
        <source>%n document(s)</source>
        <translation>
            <numerusform>%n document</numerusform>
            <numerusform>%n documents</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 of %n document(s)</source>
        <translation>
            <numerusform>%1 of %n document</numerusform>
            <numerusform>%1 of %n documents</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Norlis::Window::Questions</name>
    <message numerus="yes">
        <source>Remove %n documents from the cloud?</source>
        <translation>
            <numerusform>Remove %n document from the cloud?</numerusform>
            <numerusform>Remove %n documents from the cloud?</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n documents have changed in the cloud too. Replace them?</source>
        <translation>
            <numerusform>%n document has changed in the cloud too. Replace it?</numerusform>
            <numerusform>%n documents have changed in the cloud too. Replace them?</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Norlis::Window::TransfersPanel</name>
    <message numerus="yes">
        <source>%n failed</source>
        <translation>
            <numerusform>%n failed</numerusform>
            <numerusform>%n failed</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n transfer(s) running</source>
        <translation>
            <numerusform>%n transfer running</numerusform>
            <numerusform>%n transfers running</numerusform>
        </translation>
    </message>
</context>
</TS>
