<?php
// A SabreDAV server over a folder, for PHP's built-in web server.

require_once 'Sabre/autoload.php';

use Sabre\DAV;

// What goes wrong while a file is written becomes an answer instead of a success.
error_reporting(E_ALL & ~E_DEPRECATED);
set_error_handler(function ($severity, $message, $file, $line) {
    if (error_reporting() & $severity) {
        throw new ErrorException($message, 0, $severity, $file, $line);
    }
    return false;
});

class OneUser extends DAV\Auth\Backend\AbstractBasic
{
    protected function validateUserPass($name, $password)
    {
        return $name === getenv('NORLIS_USER') && $password === getenv('NORLIS_PASSWORD');
    }
}

$server = new DAV\Server(new DAV\FSExt\Directory(getenv('NORLIS_DOCUMENTS')));
$server->setBaseUri('/');
$server->addPlugin(new DAV\Auth\Plugin(new OneUser(), 'Norlis'));
$server->exec();
