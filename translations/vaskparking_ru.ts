<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru_RU">
<context>
    <name>AccessFiles</name>
    <message>
        <source>Destination file exists</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>AccessModel</name>
    <message>
        <source>Id</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Number</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Date from</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Date till</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Key</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comment</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>AccessTransfer</name>
    <message>
        <source>Vask is busy now. Please try again later.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No access base on Vask find out</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The list is damaged and was not sent</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The access list of the device is full</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>AddressDialog</name>
    <message>
        <source>Addresses editor</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add address</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove address</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>AddressDialogClass</name>
    <message>
        <source>Vask-parking devices configurator</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Address list</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Create new address</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove address</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Device name (IP-address)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Address editor</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Vask parking port</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File transfer port</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Vask parking port editor</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File transfer port editor</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Accept address</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>OK</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ArchiveDownload</name>
    <message>
        <source>Not defined</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ArchiveIntervalDialog</name>
    <message>
        <source>Archive time</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select the proper archive data</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>All archive</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>By selection</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Begin:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>First day</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Begin time</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>H:mm</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>End:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Last day</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>End time</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ArchiveWidget</name>
    <message>
        <source>Vask is busy now. Please try again later.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Error</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open thoroughfare table from file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>local</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save thoroughfare table to file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can&apos;t create dir</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Archive view</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ArchiveWidgetClass</name>
    <message>
        <source>Archive</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Passages</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Photo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Filter</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Number to find</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Full coincidence</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Not regional symbols coincidence</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Not regional numbers coincidence</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Empty the table</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;New table</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Download the archive of a device</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Load from net&amp;work</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open a table from a file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Load</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save the table to a file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save photo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&lt;h1&gt;Vask operation in progress&lt;/h1&gt;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>BrelProgressPie</name>
    <message>
        <source>%1%</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>BrelWindowTitle</name>
    <message>
        <source>Minimize</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Restore</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Maximize</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Dialog</name>
    <message>
        <source>Network Settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Host name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Domain name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Use DHCP</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>IP-address</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Network mask</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Gateway</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>First DNS-server</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Second DNS-server</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Phisical (MAC) address</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Attention!&lt;br&gt;Network settings will be applyed after reboot!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Apply</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>DumpFolder</name>
    <message>
        <source>The dump has already been created</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can&apos;t create dump directory</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ErrorBrowser</name>
    <message>
        <source>Error text</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>OK</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Error</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Form</name>
    <message>
        <source>Form</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>3</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Backspace</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Back</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>4</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>5</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>6</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Delete</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Del</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>7</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>8</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>9</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Space</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>0</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Full stop</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>GetFile</name>
    <message>
        <source>Connection timeout</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can&apos;t download proper data</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Archive view</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Suffered numbers</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>On-Line</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MainWindowClass</name>
    <message>
        <source>Stallo</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>OnLineWidget</name>
    <message>
        <source>Error</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Data error</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>It is not enoth space on disk!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Online</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save on-line table to file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Vask is busy now. Please try again later.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can&apos;t create dir</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>OnLineWidgetClass</name>
    <message>
        <source>On-Line</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Device 1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select device</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select &amp;device</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Alt+D</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Disconnect</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dis&amp;connect</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open barrier</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Device 2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Throwouts</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Enter table</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Photo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New table</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Push to setup network.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Net settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save data</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Alt+S</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save photo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&lt;h1&gt;Vask operation in progress&lt;/h1&gt;</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>OnlineChannel</name>
    <message>
        <source>Not Assigned</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Connecting to %1 ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No Data</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>OnlineClient</name>
    <message>
        <source>Not defined</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>PassageDetails</name>
    <message>
        <source>Number</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Date</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Access: granted automatically</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Access: granted manually</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Access: granted by card</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The number is registered</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The number is not registered</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The thoroughfare is granted</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The thoroughfare is not granted</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comment</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Access key</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>PassageTable</name>
    <message>
        <source>No Photo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add number to suffered</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save photo to file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Image file (*.jpeg)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>PhotoFiles</name>
    <message>
        <source>Destination file exists</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ProportionalSclaleWidget</name>
    <message>
        <source>Photo</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QAbstractSocket</name>
    <message>
        <source>Host not found</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Socket operation timed out</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>__</source>
        <comment>VaskSettings</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>_</source>
        <comment>VaskSettings</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>[a-z]\d{3,3}[a-z]{2,2}\d{2,3}</source>
        <comment>VaskSettings</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>[a-z?][\d?]{3,3}[a-z?]{2,2}[\d?]{2,3}</source>
        <comment>VaskSettings</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>[a-z,*]\d{3,3}[a-z,*]{2,2}\d{2,3}|[a-z,*]{3,3}</source>
        <comment>VaskSettings</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>[a-z]\d{3,3}[a-z]{2,2}\d{2,3}|\d{3,3}</source>
        <comment>VaskSettings</comment>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ScanModel</name>
    <message>
        <source>Date</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Number</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>In access list</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Access granted</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Vask ID</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comment</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Key</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Yes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Settings</name>
    <message>
        <source>tmppassbase%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tmponline%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tmpaccessbase%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>passbase%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>passbase</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>on-line</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>accessbase</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SufferedNumbersWidget</name>
    <message>
        <source>Append to Vask</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>local</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Error</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can&apos;t store the record</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Do you want to remove this records?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can&apos;t remove row</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can&apos;t add the record</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>accessbase_%1%2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open suffered table from file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save suffered table to file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Suffered numbers</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SufferedNumbersWidgetClass</name>
    <message>
        <source>Suffered numbers</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Access list</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Filter</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Number to find</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Full coincidence</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Not regional symbols coincidence</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Not regional numbers coincidence</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Id</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Number</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>From</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Date from</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Time from</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>H:mm:ss</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Till</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Date till</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Time till</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Key</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comment</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Create new record</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ctrl+N</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Delete record</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ctrl+R</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Apply changes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ctrl+Return</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The guideline of number coincidence</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Full symbol coincidence</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>One symbol discrepancy</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Two symbols discrepancy</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Three symbols discrepancy</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Full not regional numbers coincidence</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Full not regional symbols coincidence</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Begin a new list</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;New table</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fetch the list of a device</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Load from net&amp;work</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Send the list to a device</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save to net&amp;work</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Alt+Shift+W</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open a list from a file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Load</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save the list to a file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&lt;h1&gt;Vask operation in progress&lt;/h1&gt;</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>TableFileDialog</name>
    <message>
        <source>Dump file (*%1)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comma separated values file (*.csv)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>TableLoad</name>
    <message>
        <source>Interrupted</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file cannot be read to its end</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>TableSave</name>
    <message>
        <source>Destination file exists</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Interrupted</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>WholeFile</name>
    <message>
        <source>Interrupted</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file cannot be written</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Error</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stallo is already running.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
