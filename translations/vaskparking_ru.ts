<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru_RU">
<context>
    <name>AccessFiles</name>
    <message>
        <source>Destination file exists</source>
        <translation>Файл уже существует</translation>
    </message>
    <message>
        <source>The access list is longer than 100,000 entries</source>
        <translation>Список доступа длиннее 100 000 записей</translation>
    </message>
    <message>
        <source>The file is not an access list</source>
        <translation>Файл не является списком доступа</translation>
    </message>
    <message>
        <source>Interrupted</source>
        <translation>Прервано</translation>
    </message>
</context>
<context>
    <name>AccessModel</name>
    <message>
        <source>Id</source>
        <translation>ID</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Номер</translation>
    </message>
    <message>
        <source>Date from</source>
        <translation>Доступ с</translation>
    </message>
    <message>
        <source>Date till</source>
        <translation>Доступ до</translation>
    </message>
    <message>
        <source>Key</source>
        <translation>Ключ</translation>
    </message>
    <message>
        <source>Comment</source>
        <translation>Комментарий</translation>
    </message>
</context>
<context>
    <name>AccessTransfer</name>
    <message>
        <source>Vask is busy now. Please try again later.</source>
        <translation>Устройство Vask занято. Повторите попытку позже.</translation>
    </message>
    <message>
        <source>No access base on Vask find out</source>
        <translation>На устройстве Vask нет списка доступа</translation>
    </message>
    <message>
        <source>The access list of Vask is damaged.</source>
        <translation>Список доступа устройства Vask повреждён.</translation>
    </message>
    <message>
        <source>The access list of the device is full</source>
        <translation>Список доступа устройства заполнен</translation>
    </message>
</context>
<context>
    <name>AccessibleNames</name>
    <message>
        <source>Scroll up and down</source>
        <translation>Прокрутка вверх и вниз</translation>
    </message>
    <message>
        <source>Scroll sideways</source>
        <translation>Прокрутка вбок</translation>
    </message>
    <message>
        <source>Select all rows</source>
        <translation>Выбрать все строки</translation>
    </message>
    <message>
        <source>Calendar</source>
        <translation>Календарь</translation>
    </message>
    <message>
        <source>Previous month</source>
        <translation>Предыдущий месяц</translation>
    </message>
    <message>
        <source>Next month</source>
        <translation>Следующий месяц</translation>
    </message>
    <message>
        <source>Year</source>
        <translation>Год</translation>
    </message>
    <message>
        <source>Days</source>
        <translation>Дни</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Меню</translation>
    </message>
    <message>
        <source>File names on offer</source>
        <translation>Предлагаемые имена файлов</translation>
    </message>
</context>
<context>
    <name>AddressDialog</name>
    <message>
        <source>Addresses editor</source>
        <translation>Редактор адресов</translation>
    </message>
    <message>
        <source>Add address</source>
        <translation>Добавить адрес</translation>
    </message>
    <message>
        <source>Remove address</source>
        <translation>Удалить адрес</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Ошибка</translation>
    </message>
    <message>
        <source>The address list could not be stored</source>
        <translation>Не удалось сохранить список адресов</translation>
    </message>
</context>
<context>
    <name>AddressDialogClass</name>
    <message>
        <source>Vask-parking devices configurator</source>
        <translation>Настройка устройств Vask</translation>
    </message>
    <message>
        <source>Address list</source>
        <translation>Список адресов</translation>
    </message>
    <message>
        <source>Create new address</source>
        <translation>Добавить новый адрес</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Добавить</translation>
    </message>
    <message>
        <source>Remove address</source>
        <translation>Удалить адрес</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Удалить</translation>
    </message>
    <message>
        <source>Device name (IP-address)</source>
        <translation>Имя устройства (IP-адрес)</translation>
    </message>
    <message>
        <source>Address editor</source>
        <translation>Адрес устройства</translation>
    </message>
    <message>
        <source>Vask parking port</source>
        <translation>Порт устройства</translation>
    </message>
    <message>
        <source>File transfer port</source>
        <translation>Порт передачи файлов</translation>
    </message>
    <message>
        <source>Vask parking port editor</source>
        <translation>Порт связи с устройством Vask</translation>
    </message>
    <message>
        <source>File transfer port editor</source>
        <translation>Порт передачи файлов</translation>
    </message>
    <message>
        <source>Accept address</source>
        <translation>Выбрать адрес</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Закрыть</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Отмена</translation>
    </message>
</context>
<context>
    <name>ArchiveDownload</name>
    <message>
        <source>Not defined</source>
        <translation>Не определён</translation>
    </message>
</context>
<context>
    <name>ArchiveIntervalDialog</name>
    <message>
        <source>Archive time</source>
        <translation>Период архива</translation>
    </message>
    <message>
        <source>Select the proper archive data</source>
        <translation>Загружаемая часть архива</translation>
    </message>
    <message>
        <source>All archive</source>
        <translation>Весь архив</translation>
    </message>
    <message>
        <source>By selection</source>
        <translation>За период</translation>
    </message>
    <message>
        <source>Begin:</source>
        <translation>Начало:</translation>
    </message>
    <message>
        <source>First day</source>
        <translation>Дата начала</translation>
    </message>
    <message>
        <source>Begin time</source>
        <translation>Время начала</translation>
    </message>
    <message>
        <source>H:mm</source>
        <translation>H:mm</translation>
    </message>
    <message>
        <source>End:</source>
        <translation>Конец:</translation>
    </message>
    <message>
        <source>Last day</source>
        <translation>Дата окончания</translation>
    </message>
    <message>
        <source>End time</source>
        <translation>Время окончания</translation>
    </message>
    <message>
        <source>Interval</source>
        <translation>Период</translation>
    </message>
</context>
<context>
    <name>ArchiveWidget</name>
    <message>
        <source>Vask is busy now. Please try again later.</source>
        <translation>Устройство Vask занято. Повторите попытку позже.</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Ошибка</translation>
    </message>
    <message>
        <source>Open thoroughfare table from file</source>
        <translation>Открыть таблицу проездов из файла</translation>
    </message>
    <message>
        <source>local</source>
        <translation>локальный</translation>
    </message>
    <message>
        <source>Save thoroughfare table to file</source>
        <translation>Сохранить таблицу проездов в файл</translation>
    </message>
    <message>
        <source>Can&apos;t create dir</source>
        <translation>Не удалось создать папку</translation>
    </message>
    <message>
        <source>Archive view</source>
        <translation>Архив</translation>
    </message>
</context>
<context>
    <name>ArchiveWidgetClass</name>
    <message>
        <source>Archive</source>
        <translation>Архив</translation>
    </message>
    <message>
        <source>Passages</source>
        <translation>Проезды</translation>
    </message>
    <message>
        <source>Photo</source>
        <translation>Фото</translation>
    </message>
    <message>
        <source>&amp;Filter</source>
        <translation>&amp;Фильтр</translation>
    </message>
    <message>
        <source>Number to find</source>
        <translation>Искомый номер</translation>
    </message>
    <message>
        <source>Full coincidence</source>
        <translation>Полное совпадение</translation>
    </message>
    <message>
        <source>Not regional symbols coincidence</source>
        <translation>Совпадение букв без региона</translation>
    </message>
    <message>
        <source>Not regional numbers coincidence</source>
        <translation>Совпадение цифр без региона</translation>
    </message>
    <message>
        <source>Empty the table</source>
        <translation>Очистить таблицу</translation>
    </message>
    <message>
        <source>&amp;New table</source>
        <translation>&amp;Новая таблица</translation>
    </message>
    <message>
        <source>Download the archive of a device</source>
        <translation>Загрузить архив с устройства</translation>
    </message>
    <message>
        <source>Load from net&amp;work</source>
        <translation>Загрузить с &amp;устройства</translation>
    </message>
    <message>
        <source>Open a table from a file</source>
        <translation>Открыть таблицу из файла</translation>
    </message>
    <message>
        <source>&amp;Load</source>
        <translation>&amp;Открыть</translation>
    </message>
    <message>
        <source>Save the table to a file</source>
        <translation>Сохранить таблицу в файл</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Сохранить</translation>
    </message>
    <message>
        <source>Save photo</source>
        <translation>Сохранить фото</translation>
    </message>
    <message>
        <source>&lt;h1&gt;Vask operation in progress&lt;/h1&gt;</source>
        <translation>&lt;h1&gt;Выполняется операция Vask&lt;/h1&gt;</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Отмена</translation>
    </message>
    <message>
        <source>Photo of the passage</source>
        <translation>Фото проезда</translation>
    </message>
</context>
<context>
    <name>BrelProgressPie</name>
    <message>
        <source>%1%</source>
        <translation>%1%</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Ход выполнения</translation>
    </message>
</context>
<context>
    <name>BrelWindowTitle</name>
    <message>
        <source>Minimize</source>
        <translation>Свернуть</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>Восстановить</translation>
    </message>
    <message>
        <source>Maximize</source>
        <translation>Развернуть</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Закрыть</translation>
    </message>
</context>
<context>
    <name>Dialog</name>
    <message>
        <source>Network Settings</source>
        <translation>Настройки сети</translation>
    </message>
    <message>
        <source>Host name</source>
        <translation>Имя узла</translation>
    </message>
    <message>
        <source>Domain name</source>
        <translation>Имя домена</translation>
    </message>
    <message>
        <source>Use DHCP</source>
        <translation>Использовать DHCP</translation>
    </message>
    <message>
        <source>IP-address</source>
        <translation>IP-адрес</translation>
    </message>
    <message>
        <source>Network mask</source>
        <translation>Маска сети</translation>
    </message>
    <message>
        <source>Gateway</source>
        <translation>Шлюз</translation>
    </message>
    <message>
        <source>First DNS-server</source>
        <translation>Первый DNS-сервер</translation>
    </message>
    <message>
        <source>Second DNS-server</source>
        <translation>Второй DNS-сервер</translation>
    </message>
    <message>
        <source>Phisical (MAC) address</source>
        <translation>Физический адрес (MAC)</translation>
    </message>
    <message>
        <source>Attention!&lt;br&gt;Network settings will be applyed after reboot!</source>
        <translation>Внимание!&lt;br&gt;Настройки сети вступят в силу после перезагрузки!</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>Применить</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Отмена</translation>
    </message>
</context>
<context>
    <name>DlgSetupNetwork</name>
    <message>
        <source>Error</source>
        <translation>Ошибка</translation>
    </message>
    <message>
        <source>Can&apos;t store the network settings</source>
        <translation>Не удалось сохранить настройки сети</translation>
    </message>
</context>
<context>
    <name>DumpFolder</name>
    <message>
        <source>The dump has already been created</source>
        <translation>Дамп уже создан</translation>
    </message>
    <message>
        <source>Can&apos;t create dump directory</source>
        <translation>Не удалось создать папку дампа</translation>
    </message>
</context>
<context>
    <name>DumpNeighbour</name>
    <message>
        <source>Another dump in this folder has the same index and photos. Please save as:</source>
        <translation>У другого дампа в этой папке те же индекс и фото. Сохраните под именем:</translation>
    </message>
</context>
<context>
    <name>ErrorBrowser</name>
    <message>
        <source>Error text</source>
        <translation>Текст ошибки</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Ошибка</translation>
    </message>
</context>
<context>
    <name>Form</name>
    <message>
        <source>Form</source>
        <translation>Клавиатура</translation>
    </message>
    <message>
        <source>1</source>
        <translation>1</translation>
    </message>
    <message>
        <source>2</source>
        <translation>2</translation>
    </message>
    <message>
        <source>3</source>
        <translation>3</translation>
    </message>
    <message>
        <source>Backspace</source>
        <translation>Стереть слева</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Стереть</translation>
    </message>
    <message>
        <source>4</source>
        <translation>4</translation>
    </message>
    <message>
        <source>5</source>
        <translation>5</translation>
    </message>
    <message>
        <source>6</source>
        <translation>6</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Удалить справа</translation>
    </message>
    <message>
        <source>Del</source>
        <translation>Del</translation>
    </message>
    <message>
        <source>7</source>
        <translation>7</translation>
    </message>
    <message>
        <source>8</source>
        <translation>8</translation>
    </message>
    <message>
        <source>9</source>
        <translation>9</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>Пробел</translation>
    </message>
    <message>
        <source>0</source>
        <translation>0</translation>
    </message>
    <message>
        <source>Full stop</source>
        <translation>Точка</translation>
    </message>
    <message>
        <source>.</source>
        <translation>.</translation>
    </message>
    <message>
        <source>Keypad</source>
        <translation>Клавиатура</translation>
    </message>
</context>
<context>
    <name>GetFile</name>
    <message>
        <source>Connection timeout</source>
        <translation>Истекло время ожидания соединения</translation>
    </message>
    <message>
        <source>Can&apos;t download proper data</source>
        <translation>Не удалось загрузить данные</translation>
    </message>
</context>
<context>
    <name>ListEntry</name>
    <message>
        <source>Error</source>
        <translation>Ошибка</translation>
    </message>
    <message>
        <source>Can&apos;t read the record</source>
        <translation>Не удалось прочитать запись</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Archive view</source>
        <translation>Архив</translation>
    </message>
    <message>
        <source>Suffered numbers</source>
        <translation>Список доступа</translation>
    </message>
    <message>
        <source>On-Line</source>
        <translation>Онлайн</translation>
    </message>
</context>
<context>
    <name>MainWindowClass</name>
    <message>
        <source>Stallo</source>
        <translation>Stallo</translation>
    </message>
</context>
<context>
    <name>OnLineWidget</name>
    <message>
        <source>Error</source>
        <translation>Ошибка</translation>
    </message>
    <message>
        <source>Data error</source>
        <translation>Ошибка данных</translation>
    </message>
    <message>
        <source>It is not enoth space on disk!</source>
        <translation>Недостаточно места на диске!</translation>
    </message>
    <message>
        <source>Online</source>
        <translation>Онлайн</translation>
    </message>
    <message>
        <source>Save on-line table to file</source>
        <translation>Сохранить таблицу проездов в файл</translation>
    </message>
    <message>
        <source>Vask is busy now. Please try again later.</source>
        <translation>Устройство Vask занято. Повторите попытку позже.</translation>
    </message>
    <message>
        <source>Can&apos;t create dir</source>
        <translation>Не удалось создать папку</translation>
    </message>
</context>
<context>
    <name>OnLineWidgetClass</name>
    <message>
        <source>On-Line</source>
        <translation>Онлайн</translation>
    </message>
    <message>
        <source>Device 1</source>
        <translation>Устройство 1</translation>
    </message>
    <message>
        <source>Select device</source>
        <translation>Выбрать устройство</translation>
    </message>
    <message>
        <source>Select &amp;device</source>
        <translation>&amp;Выбрать</translation>
    </message>
    <message>
        <source>Alt+D</source>
        <translation>Alt+D</translation>
    </message>
    <message>
        <source>Disconnect</source>
        <translation>Отключить</translation>
    </message>
    <message>
        <source>Dis&amp;connect</source>
        <translation>&amp;Отключить</translation>
    </message>
    <message>
        <source>Open barrier</source>
        <translation>Открыть шлагбаум</translation>
    </message>
    <message>
        <source>Device 2</source>
        <translation>Устройство 2</translation>
    </message>
    <message>
        <source>Throwouts</source>
        <translation>Проезды</translation>
    </message>
    <message>
        <source>Enter table</source>
        <translation>Таблица проездов</translation>
    </message>
    <message>
        <source>Photo</source>
        <translation>Фото</translation>
    </message>
    <message>
        <source>New table</source>
        <translation>Новая таблица</translation>
    </message>
    <message>
        <source>Push to setup network.</source>
        <translation>Настройка сети панели.</translation>
    </message>
    <message>
        <source>Net settings</source>
        <translation>Настройки сети</translation>
    </message>
    <message>
        <source>Save data</source>
        <translation>Сохранить данные</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>Сохранить</translation>
    </message>
    <message>
        <source>Alt+S</source>
        <translation>Alt+S</translation>
    </message>
    <message>
        <source>Save photo</source>
        <translation>Сохранить фото</translation>
    </message>
    <message>
        <source>&lt;h1&gt;Vask operation in progress&lt;/h1&gt;</source>
        <translation>&lt;h1&gt;Выполняется операция Vask&lt;/h1&gt;</translation>
    </message>
    <message>
        <source>Camera, device 1</source>
        <translation>Камера, устройство 1</translation>
    </message>
    <message>
        <source>Select device 1</source>
        <translation>Выбрать устройство 1</translation>
    </message>
    <message>
        <source>Disconnect device 1</source>
        <translation>Отключить устройство 1</translation>
    </message>
    <message>
        <source>Open barrier, device 1</source>
        <translation>Открыть шлагбаум, устройство 1</translation>
    </message>
    <message>
        <source>Camera, device 2</source>
        <translation>Камера, устройство 2</translation>
    </message>
    <message>
        <source>Select device 2</source>
        <translation>Выбрать устройство 2</translation>
    </message>
    <message>
        <source>Disconnect device 2</source>
        <translation>Отключить устройство 2</translation>
    </message>
    <message>
        <source>Open barrier, device 2</source>
        <translation>Открыть шлагбаум, устройство 2</translation>
    </message>
    <message>
        <source>Passages</source>
        <translation>Проезды</translation>
    </message>
    <message>
        <source>Photo of the passage</source>
        <translation>Фото проезда</translation>
    </message>
</context>
<context>
    <name>OnlineChannel</name>
    <message>
        <source>Not Assigned</source>
        <translation>Не задано</translation>
    </message>
    <message>
        <source>Connecting to %1 ...</source>
        <translation>%1: подключение...</translation>
    </message>
    <message>
        <source>No Data</source>
        <translation>Нет данных</translation>
    </message>
</context>
<context>
    <name>OnlineClient</name>
    <message>
        <source>Not defined</source>
        <translation>Не определён</translation>
    </message>
</context>
<context>
    <name>PassageDetails</name>
    <message>
        <source>Can&apos;t read the record</source>
        <translation>Не удалось прочитать запись</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Номер</translation>
    </message>
    <message>
        <source>Date</source>
        <translation>Дата</translation>
    </message>
    <message>
        <source>Access: granted automatically</source>
        <translation>Доступ: автоматически</translation>
    </message>
    <message>
        <source>Access: granted manually</source>
        <translation>Доступ: вручную</translation>
    </message>
    <message>
        <source>Access: granted by card</source>
        <translation>Доступ: по карте</translation>
    </message>
    <message>
        <source>The number is registered</source>
        <translation>Номер зарегистрирован</translation>
    </message>
    <message>
        <source>The number is not registered</source>
        <translation>Номер не зарегистрирован</translation>
    </message>
    <message>
        <source>The thoroughfare is granted</source>
        <translation>Проезд разрешён</translation>
    </message>
    <message>
        <source>The thoroughfare is not granted</source>
        <translation>Проезд не разрешён</translation>
    </message>
    <message>
        <source>Comment</source>
        <translation>Комментарий</translation>
    </message>
    <message>
        <source>Access key</source>
        <translation>Ключ доступа</translation>
    </message>
</context>
<context>
    <name>PassageTable</name>
    <message>
        <source>Error</source>
        <translation>Ошибка</translation>
    </message>
    <message>
        <source>No Photo</source>
        <translation>Нет фото</translation>
    </message>
    <message>
        <source>Add number to suffered</source>
        <translation>Добавить номер в список доступа</translation>
    </message>
    <message>
        <source>Save photo to file</source>
        <translation>Сохранить фото в файл</translation>
    </message>
    <message>
        <source>Image file (*.jpeg)</source>
        <translation>Файл изображения (*.jpeg)</translation>
    </message>
</context>
<context>
    <name>PhotoFiles</name>
    <message>
        <source>Destination file exists</source>
        <translation>Файл уже существует</translation>
    </message>
</context>
<context>
    <name>ProportionalSclaleWidget</name>
    <message>
        <source>Photo</source>
        <translation>Фото</translation>
    </message>
</context>
<context>
    <name>QAbstractSocket</name>
    <message>
        <source>Socket operation timed out</source>
        <translation>Время на операцию истекло</translation>
    </message>
</context>
<context>
    <name>QNativeSocketEngine</name>
    <message>
        <source>The remote host closed the connection</source>
        <translation>Удалённый узел закрыл соединение</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>__</source>
        <comment>VaskSettings</comment>
        <translation>АВЕКМНОРСТУХ</translation>
    </message>
    <message>
        <source>_</source>
        <comment>VaskSettings</comment>
        <translation>ABEKMHOPCTYX</translation>
    </message>
    <message>
        <source>[a-z]\d{3,3}[a-z]{2,2}\d{2,3}</source>
        <comment>VaskSettings</comment>
        <translation>[a-zавекмнорстух]\d{3,3}[a-zавекмнорстух]{2,2}\d{2,3}</translation>
    </message>
    <message>
        <source>[a-z?][\d?]{3,3}[a-z?]{2,2}[\d?]{2,3}</source>
        <comment>VaskSettings</comment>
        <translation>[a-zавекмнорстух?][\d?]{3,3}[a-zавекмнорстух?]{2,2}[\d?]{2,3}</translation>
    </message>
    <message>
        <source>[a-z,*]\d{3,3}[a-z,*]{2,2}\d{2,3}|[a-z,*]{3,3}</source>
        <comment>VaskSettings</comment>
        <translation>[a-zавекмнорстух,*]\d{3,3}[a-zавекмнорстух,*]{2,2}\d{2,3}|[a-zавекмнорстух,*]{3,3}</translation>
    </message>
    <message>
        <source>[a-z]\d{3,3}[a-z]{2,2}\d{2,3}|\d{3,3}</source>
        <comment>VaskSettings</comment>
        <translation>[a-zавекмнорстух]\d{3,3}[a-zавекмнорстух]{2,2}\d{2,3}|\d{3,3}</translation>
    </message>
</context>
<context>
    <name>RegularFile</name>
    <message>
        <source>This is not a regular file</source>
        <translation>Это не обычный файл</translation>
    </message>
</context>
<context>
    <name>ScanModel</name>
    <message>
        <source>Date</source>
        <translation>Дата</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Номер</translation>
    </message>
    <message>
        <source>In access list</source>
        <translation>В списке</translation>
    </message>
    <message>
        <source>Access granted</source>
        <translation>Разрешён</translation>
    </message>
    <message>
        <source>Vask ID</source>
        <translation>ID Vask</translation>
    </message>
    <message>
        <source>Comment</source>
        <translation>Комментарий</translation>
    </message>
    <message>
        <source>Key</source>
        <translation>Ключ</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Да</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Нет</translation>
    </message>
</context>
<context>
    <name>Settings</name>
    <message>
        <source>tmppassbase%1</source>
        <translation>tmppassbase%1</translation>
    </message>
    <message>
        <source>tmponline%1</source>
        <translation>tmponline%1</translation>
    </message>
    <message>
        <source>tmpaccessbase%1</source>
        <translation>tmpaccessbase%1</translation>
    </message>
    <message>
        <source>passbase%1</source>
        <translation>passbase%1</translation>
    </message>
    <message>
        <source>passbase</source>
        <translation>passbase</translation>
    </message>
    <message>
        <source>on-line</source>
        <translation>on-line</translation>
    </message>
    <message>
        <source>accessbase</source>
        <translation>accessbase</translation>
    </message>
</context>
<context>
    <name>SourceGuard</name>
    <message>
        <source>The file changed while it was being read</source>
        <translation>Файл изменился во время чтения</translation>
    </message>
</context>
<context>
    <name>SpokenCell</name>
    <message>
        <source>%1: empty</source>
        <translation>%1: пусто</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>Startup</name>
    <message>
        <source>Nothing can be stored in these folders:</source>
        <translation>В эти папки нельзя записывать:</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Ошибка</translation>
    </message>
    <message>
        <source>The former table was kept:</source>
        <translation>Прежняя таблица сохранена:</translation>
    </message>
    <message>
        <source>The former table could not be kept.</source>
        <translation>Прежнюю таблицу сохранить не удалось.</translation>
    </message>
</context>
<context>
    <name>SufferedNumbersWidget</name>
    <message>
        <source>Append to Vask</source>
        <translation>Добавить на устройство Vask</translation>
    </message>
    <message>
        <source>local</source>
        <translation>локальный</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Ошибка</translation>
    </message>
    <message>
        <source>Can&apos;t store the record</source>
        <translation>Не удалось сохранить запись</translation>
    </message>
    <message>
        <source>Do you want to remove this records?</source>
        <translation>Удалить эти записи?</translation>
    </message>
    <message>
        <source>Can&apos;t remove row</source>
        <translation>Не удалось удалить строку</translation>
    </message>
    <message>
        <source>Can&apos;t add the record</source>
        <translation>Не удалось добавить запись</translation>
    </message>
    <message>
        <source>accessbase_%1%2</source>
        <translation>accessbase_%1%2</translation>
    </message>
    <message>
        <source>Open suffered table from file</source>
        <translation>Открыть список доступа из файла</translation>
    </message>
    <message>
        <source>Save suffered table to file</source>
        <translation>Сохранить список доступа в файл</translation>
    </message>
    <message>
        <source>Suffered numbers</source>
        <translation>Список доступа</translation>
    </message>
</context>
<context>
    <name>SufferedNumbersWidgetClass</name>
    <message>
        <source>Suffered numbers</source>
        <translation>Список доступа</translation>
    </message>
    <message>
        <source>Access list</source>
        <translation>Список доступа</translation>
    </message>
    <message>
        <source>&amp;Filter</source>
        <translation>&amp;Фильтр</translation>
    </message>
    <message>
        <source>Number to find</source>
        <translation>Искомый номер</translation>
    </message>
    <message>
        <source>Full coincidence</source>
        <translation>Полное совпадение</translation>
    </message>
    <message>
        <source>Not regional symbols coincidence</source>
        <translation>Совпадение букв без региона</translation>
    </message>
    <message>
        <source>Not regional numbers coincidence</source>
        <translation>Совпадение цифр без региона</translation>
    </message>
    <message>
        <source>Id</source>
        <translation>ID</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Номер</translation>
    </message>
    <message>
        <source>From</source>
        <translation>С</translation>
    </message>
    <message>
        <source>Date from</source>
        <translation>Дата начала доступа</translation>
    </message>
    <message>
        <source>Time from</source>
        <translation>Время начала доступа</translation>
    </message>
    <message>
        <source>H:mm:ss</source>
        <translation>H:mm:ss</translation>
    </message>
    <message>
        <source>Till</source>
        <translation>До</translation>
    </message>
    <message>
        <source>Date till</source>
        <translation>Дата окончания доступа</translation>
    </message>
    <message>
        <source>Time till</source>
        <translation>Время окончания доступа</translation>
    </message>
    <message>
        <source>Key</source>
        <translation>Ключ</translation>
    </message>
    <message>
        <source>Comment</source>
        <translation>Комментарий</translation>
    </message>
    <message>
        <source>Create new record</source>
        <translation>Создать</translation>
    </message>
    <message>
        <source>Ctrl+N</source>
        <translation>Ctrl+N</translation>
    </message>
    <message>
        <source>Delete record</source>
        <translation>Удалить</translation>
    </message>
    <message>
        <source>Ctrl+R</source>
        <translation>Ctrl+R</translation>
    </message>
    <message>
        <source>Apply changes</source>
        <translation>Применить</translation>
    </message>
    <message>
        <source>Ctrl+Return</source>
        <translation>Ctrl+Return</translation>
    </message>
    <message>
        <source>The guideline of number coincidence</source>
        <translation>Правило совпадения номеров</translation>
    </message>
    <message>
        <source>Full symbol coincidence</source>
        <translation>Полное совпадение символов</translation>
    </message>
    <message>
        <source>One symbol discrepancy</source>
        <translation>Расхождение в одном символе</translation>
    </message>
    <message>
        <source>Two symbols discrepancy</source>
        <translation>Расхождение в двух символах</translation>
    </message>
    <message>
        <source>Three symbols discrepancy</source>
        <translation>Расхождение в трёх символах</translation>
    </message>
    <message>
        <source>Full not regional numbers coincidence</source>
        <translation>Полное совпадение цифр без региона</translation>
    </message>
    <message>
        <source>Full not regional symbols coincidence</source>
        <translation>Полное совпадение букв без региона</translation>
    </message>
    <message>
        <source>Begin a new list</source>
        <translation>Начать новый список</translation>
    </message>
    <message>
        <source>&amp;New table</source>
        <translation>&amp;Новая таблица</translation>
    </message>
    <message>
        <source>Fetch the list of a device</source>
        <translation>Загрузить список с устройства</translation>
    </message>
    <message>
        <source>Load from net&amp;work</source>
        <translation>Загрузить с &amp;устройства</translation>
    </message>
    <message>
        <source>Send the list to a device</source>
        <translation>Отправить список на устройство</translation>
    </message>
    <message>
        <source>Save to net&amp;work</source>
        <translation>Отправить на устройство</translation>
    </message>
    <message>
        <source>Alt+Shift+W</source>
        <translation>Alt+Shift+W</translation>
    </message>
    <message>
        <source>Open a list from a file</source>
        <translation>Открыть список из файла</translation>
    </message>
    <message>
        <source>&amp;Load</source>
        <translation>&amp;Открыть</translation>
    </message>
    <message>
        <source>Save the list to a file</source>
        <translation>Сохранить список в файл</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Сохранить</translation>
    </message>
    <message>
        <source>&lt;h1&gt;Vask operation in progress&lt;/h1&gt;</source>
        <translation>&lt;h1&gt;Выполняется операция Vask&lt;/h1&gt;</translation>
    </message>
</context>
<context>
    <name>TableFileDialog</name>
    <message>
        <source>Dump file (*%1)</source>
        <translation>Файл дампа (*%1)</translation>
    </message>
    <message>
        <source>Comma separated values file (*.csv)</source>
        <translation>Файл CSV (*.csv)</translation>
    </message>
</context>
<context>
    <name>TableLoad</name>
    <message>
        <source>Interrupted</source>
        <translation>Прервано</translation>
    </message>
    <message>
        <source>The file cannot be read to its end</source>
        <translation>Файл не удалось прочитать до конца</translation>
    </message>
</context>
<context>
    <name>TableSave</name>
    <message>
        <source>Destination file exists</source>
        <translation>Файл уже существует</translation>
    </message>
    <message>
        <source>Interrupted</source>
        <translation>Прервано</translation>
    </message>
</context>
<context>
    <name>WholeFile</name>
    <message>
        <source>Interrupted</source>
        <translation>Прервано</translation>
    </message>
    <message>
        <source>The file cannot be written</source>
        <translation>Не удалось записать файл</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Error</source>
        <translation>Ошибка</translation>
    </message>
    <message>
        <source>Stallo is already running.</source>
        <translation>Программа Stallo уже запущена.</translation>
    </message>
</context>
</TS>
