<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="sk" sourcelanguage="en">
<context>
    <name>Localizable</name>
    <message>
        <source>Next</source>
        <extracomment>Go to the next step</extracomment>
        <translation>Ďalej</translation>
    </message>
    <message>
        <source>Finish</source>
        <extracomment>Completed the steps</extracomment>
        <translation>Dokončiť</translation>
    </message>
    <message>
        <source>Thanks!</source>
        <extracomment>Thank you for taking the survey</extracomment>
        <translation>Ďakujeme!</translation>
    </message>
    <message>
        <source>I think that...</source>
        <extracomment>Unfinished thought on what I think</extracomment>
        <translation>Myslím si, že…</translation>
    </message>
    <message>
        <source>Close</source>
        <extracomment>Put the survey away</extracomment>
        <translation>Zavrieť</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <extracomment>Which one of how many: question 2 of 5</extracomment>
        <translation>%1 z %2</translation>
    </message>
</context>
</TS>
